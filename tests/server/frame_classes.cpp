#include "server/frame_classes.h"

namespace qv::tests {
namespace {

TYPEATTR copy_of_attributes(ITypeInfo* info) {
  TYPEATTR* attributes = nullptr;
  EXPECT_EQ(info->GetTypeAttr(&attributes), S_OK);
  const TYPEATTR copy = *attributes;
  info->ReleaseTypeAttr(attributes);
  return copy;
}

LibraryClass describe(ITypeInfo* info) {
  const TYPEATTR attributes = copy_of_attributes(info);
  LibraryClass description;
  String name;
  info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
  description.name = name.view();
  description.class_id = attributes.guid;
  for (UINT i = 0; i < attributes.cImplTypes; ++i) {
    HREFTYPE reference = 0;
    INT flags = 0;
    Pointer<ITypeInfo> target;
    EXPECT_EQ(info->GetRefTypeOfImplType(i, &reference), S_OK);
    EXPECT_EQ(info->GetImplTypeFlags(i, &flags), S_OK);
    EXPECT_EQ(info->GetRefTypeInfo(reference, target.receive()), S_OK);
    const bool is_source = (flags & IMPLTYPEFLAG_FSOURCE) != 0;
    (is_source ? description.events_id : description.interface_id) =
        copy_of_attributes(target.get()).guid;
  }
  return description;
}

}  // namespace

std::vector<LibraryClass> library_classes() {
  std::vector<LibraryClass> classes;
  const auto library = compiled_library();
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    Pointer<ITypeInfo> info;
    EXPECT_EQ(library->GetTypeInfo(i, info.receive()), S_OK);
    if (copy_of_attributes(info.get()).typekind == TKIND_COCLASS) {
      classes.push_back(describe(info.get()));
    }
  }
  return classes;
}

}  // namespace qv::tests
