// The type library inside the built server against the independent table of the interface.
#include "server/frame_library_file.h"
#include "server/frame_type_library_text.h"

namespace qv::tests {
namespace {

constexpr const char* kTable = "tests/server/interface.txt";

void expect_equal(const InterfaceBlocks& table, const InterfaceBlocks& library) {
  for (const auto& [head, lines] : library) EXPECT_TRUE(table.contains(head)) << head;
  for (const auto& [head, lines] : table) {
    const auto found = library.find(head);
    if (found == library.end()) {
      ADD_FAILURE() << "not in the type library: " << head;
      continue;
    }
    EXPECT_EQ(found->second.size(), lines.size()) << head;
    for (std::size_t i = 0; i < std::min(lines.size(), found->second.size()); ++i) {
      EXPECT_EQ(found->second[i], lines[i]) << head << ", operation " << i + 1;
    }
  }
}

TEST(Frame_Interface, type_library_in_the_file_is_the_table) {
  expect_equal(blocks_of_table(kTable), blocks_of_library(compiled_library().get()));
}

TEST(Frame_Interface, registered_type_library_is_the_table) {
  expect_equal(blocks_of_table(kTable), blocks_of_library(registered_library().get()));
}

TEST(Frame_Interface, the_table_has_23_classes_and_the_global_class_395_operations) {
  const auto table = blocks_of_table(kTable);
  int classes = 0;
  std::size_t operations = 0;
  for (const auto& [head, lines] : table) {
    classes += head.starts_with("class ") ? 1 : 0;
    if (head.starts_with("class KwRtLib ")) operations = lines.size();
  }
  EXPECT_EQ(classes, 23);
  EXPECT_EQ(operations, 395U);
}

TEST(Frame_Interface, every_type_member_and_constant_has_a_help_string) {
  const auto names = names_without_help(compiled_library().get());
  for (const std::string& name : names) ADD_FAILURE() << name;
}

TEST(Frame_Interface, a_constant_has_its_own_help_string) {
  Pointer<ITypeInfo> flags;
  MEMBERID id = MEMBERID_NIL;
  UINT16 found = 1;
  std::wstring name = L"DE_NOSAVE";
  ASSERT_EQ(compiled_library()->FindName(name.data(), 0, flags.receive(), &id, &found), S_OK);
  ASSERT_EQ(found, 1);
  String help;
  ASSERT_EQ(flags->GetDocumentation(id, nullptr, &help, nullptr, nullptr), S_OK);
  EXPECT_EQ(help.view(), L"the message box does not offer to save the text");
}

TEST(Frame_Interface, name_lookup_of_a_compiler_finds_members_of_the_global_class) {
  const auto library = compiled_library();
  Pointer<ITypeComp> compiler;
  ASSERT_EQ(library->GetTypeComp(compiler.receive()), S_OK);
  Pointer<ITypeInfo> found;
  DESCKIND kind = DESCKIND_NONE;
  BINDPTR binding{};
  wchar_t name[] = L"Buffer_Put";
  ASSERT_EQ(compiler->Bind(name, LHashValOfNameSys(SYS_WIN32, 0x409, name), 0, found.receive(),
                           &kind, &binding),
            S_OK);
  EXPECT_EQ(kind, DESCKIND_IMPLICITAPPOBJ);
  if (kind == DESCKIND_IMPLICITAPPOBJ) found->ReleaseVarDesc(binding.lpvardesc);
}

}  // namespace
}  // namespace qv::tests
