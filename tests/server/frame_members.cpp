#include "server/frame_members.h"

namespace qv::tests {
namespace {

VARTYPE type_of_reference(ITypeInfo* info, HREFTYPE reference) {
  Pointer<ITypeInfo> target;
  EXPECT_EQ(info->GetRefTypeInfo(reference, target.receive()), S_OK);
  TYPEATTR* attributes = nullptr;
  EXPECT_EQ(target->GetTypeAttr(&attributes), S_OK);
  const TYPEKIND kind = attributes->typekind;
  const TYPEDESC alias = attributes->tdescAlias;
  target->ReleaseTypeAttr(attributes);
  switch (kind) {
    case TKIND_ENUM:
      return VT_I4;
    case TKIND_RECORD:
      return VT_RECORD;
    case TKIND_ALIAS:
      return alias.vt == VT_USERDEFINED ? type_of_reference(target.get(), alias.hreftype)
                                        : alias.vt;
    default:
      return VT_DISPATCH;
  }
}

ParameterOf describe(ITypeInfo* info, const ELEMDESC& element) {
  ParameterOf parameter;
  parameter.is_optional =
      (element.paramdesc.wParamFlags & (PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT)) != 0;
  int pointers = 0;
  const TYPEDESC* type = &element.tdesc;
  for (; type->vt == VT_PTR || type->vt == VT_SAFEARRAY; type = type->lptdesc) {
    if (type->vt == VT_SAFEARRAY) {
      parameter.is_array = true;
      parameter.is_reference = pointers > 0;
      pointers = 0;
    } else {
      ++pointers;
    }
  }
  parameter.type = type->vt == VT_USERDEFINED ? type_of_reference(info, type->hreftype) : type->vt;
  // An object by value is a pointer already.
  const bool is_object = parameter.type == VT_DISPATCH && type->vt == VT_USERDEFINED;
  if (!parameter.is_array) parameter.is_reference = pointers > (is_object ? 1 : 0);
  return parameter;
}

}  // namespace

std::vector<MemberOf> members_of(IDispatch* object) {
  constexpr std::size_t kOwnOffset_bytes = 7 * sizeof(void*);
  std::vector<MemberOf> members;
  Pointer<ITypeInfo> info;
  EXPECT_EQ(object->GetTypeInfo(0, 0, info.receive()), S_OK);
  for (UINT i = 0;; ++i) {
    FUNCDESC* function = nullptr;
    if (FAILED(info->GetFuncDesc(i, &function))) break;
    MemberOf member;
    member.offset_bytes = static_cast<std::size_t>(function->oVft);
    if (member.offset_bytes >= kOwnOffset_bytes) {
      String name;
      info->GetDocumentation(function->memid, &name, nullptr, nullptr, nullptr);
      member.name = name.view();
      member.id = function->memid;
      member.kind = static_cast<WORD>(function->invkind);
      member.has_result = function->elemdescFunc.tdesc.vt != VT_VOID;
      for (SHORT p = 0; p < function->cParams; ++p) {
        member.parameters.push_back(describe(info.get(), function->lprgelemdescParam[p]));
      }
      members.push_back(std::move(member));
    }
    info->ReleaseFuncDesc(function);
  }
  return members;
}

}  // namespace qv::tests
