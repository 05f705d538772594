#include "server/frame_type_library_text.h"

#include <cctype>
#include <fstream>
#include <functional>

namespace qv::tests {
namespace {

constexpr int kFirstSlot = 7;  // behind IUnknown's three and IDispatch's four methods

std::string narrow(std::wstring_view text) {
  std::string result;
  for (const wchar_t unit : text) result += static_cast<char>(unit);
  return result;
}

std::string guid_of(const GUID& id) {
  wchar_t text[40];
  StringFromGUID2(id, text, static_cast<int>(std::size(text)));
  return narrow(std::wstring_view(text + 1, 36));
}

std::string name_of(ITypeInfo* info, MEMBERID member = MEMBERID_NIL) {
  String name;
  info->GetDocumentation(member, &name, nullptr, nullptr, nullptr);
  return narrow(name.view());
}

bool has_help(ITypeInfo* info, MEMBERID member = MEMBERID_NIL) {
  String help;
  info->GetDocumentation(member, nullptr, &help, nullptr, nullptr);
  return help.length() > 0;
}

// The attributes of a type and, below, the descriptions of its members, each given back.
class Attributes {
 public:
  explicit Attributes(ITypeInfo* info) : info_(info) { info_->GetTypeAttr(&attributes_); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;
  ~Attributes() { info_->ReleaseTypeAttr(attributes_); }
  const TYPEATTR* operator->() const { return attributes_; }

 private:
  ITypeInfo* info_;
  TYPEATTR* attributes_ = nullptr;
};

void each_function(ITypeInfo* info, const std::function<void(const FUNCDESC&)>& visit) {
  const UINT count = Attributes(info)->cFuncs;
  for (UINT i = 0; i < count; ++i) {
    FUNCDESC* function = nullptr;
    ASSERT_EQ(info->GetFuncDesc(i, &function), S_OK);
    visit(*function);
    info->ReleaseFuncDesc(function);
  }
}

void each_variable(ITypeInfo* info, const std::function<void(const VARDESC&)>& visit) {
  const UINT count = Attributes(info)->cVars;
  for (UINT i = 0; i < count; ++i) {
    VARDESC* variable = nullptr;
    ASSERT_EQ(info->GetVarDesc(i, &variable), S_OK);
    visit(*variable);
    info->ReleaseVarDesc(variable);
  }
}

Pointer<ITypeInfo> referred(ITypeInfo* info, HREFTYPE reference) {
  Pointer<ITypeInfo> target;
  EXPECT_EQ(info->GetRefTypeInfo(reference, target.receive()), S_OK);
  return target;
}

// How Visual Basic calls a type.
std::string type_text(ITypeInfo* info, const TYPEDESC& type) {
  static const std::map<VARTYPE, std::string> kNames = {
      {VT_I2, "Integer"},      {VT_I4, "Long"},         {VT_R4, "Single"},
      {VT_R8, "Double"},       {VT_CY, "Currency"},     {VT_DATE, "Date"},
      {VT_BOOL, "Boolean"},    {VT_UI1, "Byte"},        {VT_BSTR, "String"},
      {VT_VARIANT, "Variant"}, {VT_DISPATCH, "Object"}, {VT_UNKNOWN, "Unknown"}};
  if (const auto found = kNames.find(type.vt); found != kNames.end()) return found->second;
  if (type.vt == VT_SAFEARRAY) return type_text(info, *type.lptdesc) + "()";
  if (type.vt == VT_PTR) return type_text(info, *type.lptdesc);
  if (type.vt != VT_USERDEFINED) return "type " + std::to_string(type.vt);
  const auto target = referred(info, type.hreftype);
  const std::string name = name_of(target.get());
  if (name == "IFontDisp") return "Font";
  if (name == "IDispatch") return "Object";
  if (name == "IUnknown") return "Unknown";
  return name.starts_with('_') ? name.substr(1) : name;
}

bool is_object(ITypeInfo* info, const TYPEDESC& type) {
  if (type.vt == VT_DISPATCH || type.vt == VT_UNKNOWN) return true;
  if (type.vt != VT_USERDEFINED) return false;
  const auto target = referred(info, type.hreftype);
  const Attributes attributes(target.get());
  if (attributes->typekind == TKIND_ALIAS) return is_object(target.get(), attributes->tdescAlias);
  return attributes->typekind == TKIND_INTERFACE || attributes->typekind == TKIND_DISPATCH;
}

// By reference is one pointer more than the type itself has: an object is a pointer already.
bool is_by_reference(ITypeInfo* info, const TYPEDESC& type) {
  if (type.vt != VT_PTR) return false;
  const TYPEDESC& target = *type.lptdesc;
  const bool is_object_pointer = target.vt == VT_USERDEFINED && is_object(info, target);
  return !is_object_pointer;
}

std::string default_text(const std::string& type, const VARIANT& value) {
  switch (value.vt) {
    case VT_BSTR: {
      std::string text = "\"";
      const UINT length = SysStringLen(value.bstrVal);
      for (UINT i = 0; i < length; ++i) {
        const wchar_t unit = value.bstrVal[i];
        text += unit == 0 ? std::string("\\0") : std::string(1, static_cast<char>(unit));
      }
      return text + '"';
    }
    case VT_BOOL:
      return value.boolVal == VARIANT_TRUE ? "True" : value.boolVal == 0 ? "False" : "odd Boolean";
    case VT_I2:
      return (type == "Integer" ? "" : "Integer ") + std::to_string(value.iVal);
    case VT_I4:
    case VT_INT:
      if (type == "kwCollection" || type == "Font" || type == "QvSort") {
        return value.lVal == 0 ? "Nothing" : "odd object";
      }
      return std::to_string(value.lVal);
    case VT_UNKNOWN:
    case VT_DISPATCH:
      return value.punkVal == nullptr ? "Nothing" : "odd object";
    default:
      return "default of type " + std::to_string(value.vt);
  }
}

std::string parameter_text(ITypeInfo* info, const ELEMDESC& element, const std::string& name) {
  const std::string type = type_text(info, element.tdesc);
  std::string text = name + " " + type;
  text += is_by_reference(info, element.tdesc) ? " byref" : " byval";
  const USHORT flags = element.paramdesc.wParamFlags;
  if ((flags & PARAMFLAG_FOPT) != 0) text += " optional";
  if ((flags & PARAMFLAG_FHASDEFAULT) != 0) {
    text += "=" + default_text(type, element.paramdesc.pparamdescex->varDefaultValue);
  }
  return text;
}

std::string function_text(ITypeInfo* info, const FUNCDESC& function, bool is_event) {
  BSTR names[32] = {};
  UINT count = 0;
  info->GetNames(function.memid, names, 32, &count);
  const bool is_put = (function.invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) != 0;
  std::string arguments;
  std::string result;
  for (SHORT i = 0; i < function.cParams; ++i) {
    const ELEMDESC& element = function.lprgelemdescParam[i];
    if ((element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) {
      const TYPEDESC& type = *element.tdesc.lptdesc;
      result = " " + type_text(info, type);
      continue;
    }
    const UINT at = static_cast<UINT>(i) + 1;
    const std::string name = is_put || at >= count ? "Value" : narrow(names[at]);
    if (!arguments.empty()) arguments += ", ";
    arguments += parameter_text(info, element, name);
  }
  std::string text = is_event                                    ? "event "
                     : function.invkind == INVOKE_PROPERTYGET    ? "get "
                     : function.invkind == INVOKE_PROPERTYPUT    ? "let "
                     : function.invkind == INVOKE_PROPERTYPUTREF ? "set "
                                                                 : "method ";
  text += narrow(names[0]) + "(" + arguments + ")" + result;
  if (function.memid <= 0) text += " id=" + std::to_string(function.memid);
  for (UINT i = 0; i < count; ++i) SysFreeString(names[i]);
  return text;
}

std::vector<std::string> operations_of(ITypeInfo* info, bool is_event) {
  std::vector<std::string> lines;
  int slot = kFirstSlot;
  each_function(info, [&](const FUNCDESC& function) {
    lines.push_back(function_text(info, function, is_event));
    if (is_event) return;
    EXPECT_EQ(function.oVft, slot * static_cast<int>(sizeof(void*))) << lines.back();
    EXPECT_EQ(function.callconv, CC_STDCALL) << lines.back();
    EXPECT_EQ(function.elemdescFunc.tdesc.vt, VT_HRESULT) << lines.back();
    ++slot;
  });
  return lines;
}

// The function table behind the dispatch view of a dual interface.
Pointer<ITypeInfo> table_view(ITypeInfo* dispatch_view) {
  HREFTYPE reference = 0;
  EXPECT_EQ(dispatch_view->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
  return referred(dispatch_view, reference);
}

void add_class(ITypeInfo* info, InterfaceBlocks& blocks) {
  const Attributes attributes(info);
  std::string kind = (attributes->wTypeFlags & TYPEFLAG_FAPPOBJECT) != 0 ? "global," : "";
  kind += (attributes->wTypeFlags & TYPEFLAG_FCANCREATE) != 0 ? "creatable" : "not creatable";
  const std::string name = name_of(info);
  std::string interface_id = "-";
  std::string events_id = "-";
  std::vector<std::string> lines;
  for (UINT i = 0; i < attributes->cImplTypes; ++i) {
    HREFTYPE reference = 0;
    INT flags = 0;
    info->GetRefTypeOfImplType(i, &reference);
    info->GetImplTypeFlags(i, &flags);
    const auto target = referred(info, reference);
    const std::string id = guid_of(Attributes(target.get())->guid);
    EXPECT_NE(flags & IMPLTYPEFLAG_FDEFAULT, 0) << name;
    if ((flags & IMPLTYPEFLAG_FSOURCE) != 0) {
      events_id = id;
      EXPECT_EQ(name_of(target.get()), "__" + name);
      EXPECT_EQ(Attributes(target.get())->typekind, TKIND_DISPATCH);
      blocks["events __" + name + " " + id] = operations_of(target.get(), true);
    } else {
      interface_id = id;
      EXPECT_EQ(name_of(target.get()), "_" + name);
      EXPECT_NE(Attributes(target.get())->wTypeFlags & TYPEFLAG_FDUAL, 0) << name;
      lines = operations_of(table_view(target.get()).get(), false);
    }
  }
  blocks["class " + name + " " + guid_of(attributes->guid) + " " + interface_id + " " + events_id +
         " " + kind] = lines;
}

void add_type(ITypeInfo* info, InterfaceBlocks& blocks) {
  const Attributes attributes(info);
  const std::string name = name_of(info);
  switch (attributes->typekind) {
    case TKIND_ENUM: {
      auto& lines = blocks["enum " + name];
      each_variable(info, [&](const VARDESC& constant) {
        lines.push_back(name_of(info, constant.memid) + " " +
                        std::to_string(constant.lpvarValue->lVal));
      });
      break;
    }
    case TKIND_RECORD: {
      auto& lines = blocks["record " + name];
      each_variable(info, [&](const VARDESC& field) {
        lines.push_back(name_of(info, field.memid) + " " +
                        type_text(info, field.elemdescVar.tdesc));
      });
      break;
    }
    case TKIND_ALIAS:
      blocks["alias " + name + " " + guid_of(attributes->guid) + " _" +
             type_text(info, attributes->tdescAlias)] = {};
      break;
    case TKIND_COCLASS:
      add_class(info, blocks);
      break;
    default:  // interfaces are written with their class
      break;
  }
}

std::string trimmed(const std::string& line) {
  const auto first = line.find_first_not_of(" \t\r");
  const auto last = line.find_last_not_of(" \t\r");
  return first == std::string::npos ? "" : line.substr(first, last - first + 1);
}

void each_type(ITypeLib* library, const std::function<void(ITypeInfo*)>& visit) {
  const UINT count = library->GetTypeInfoCount();
  for (UINT i = 0; i < count; ++i) {
    Pointer<ITypeInfo> info;
    ASSERT_EQ(library->GetTypeInfo(i, info.receive()), S_OK);
    visit(info.get());
  }
}

}  // namespace

InterfaceBlocks blocks_of_table(const char* path) {
  InterfaceBlocks blocks;
  std::ifstream file(path);
  EXPECT_TRUE(file.good()) << path;
  std::string line;
  std::string head;
  while (std::getline(file, line)) {
    const std::string text = trimmed(line);
    if (text.empty() || text[0] == '#') continue;
    if (std::isspace(static_cast<unsigned char>(line[0])) != 0) {
      blocks[head].push_back(text);
    } else {
      head = text;
      blocks[head];
    }
  }
  return blocks;
}

InterfaceBlocks blocks_of_library(ITypeLib* library) {
  InterfaceBlocks blocks;
  TLIBATTR* attributes = nullptr;
  String name;
  EXPECT_EQ(library->GetLibAttr(&attributes), S_OK);
  library->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
  char locale[16];
  wsprintfA(locale, "0x%x", static_cast<unsigned>(attributes->lcid));
  blocks["library " + narrow(name.view()) + " " + guid_of(attributes->guid) + " " +
         std::to_string(attributes->wMajorVerNum) + "." + std::to_string(attributes->wMinorVerNum) +
         " " + locale];
  library->ReleaseTLibAttr(attributes);
  each_type(library, [&](ITypeInfo* info) { add_type(info, blocks); });
  return blocks;
}

std::vector<std::string> names_without_help(ITypeLib* library) {
  std::vector<std::string> names;
  String help;
  library->GetDocumentation(MEMBERID_NIL, nullptr, &help, nullptr, nullptr);
  if (help.length() == 0) names.push_back("the library");
  each_type(library, [&](ITypeInfo* info) {
    const auto kind = Attributes(info)->typekind;
    if (kind == TKIND_ALIAS) return;  // hidden
    if (!has_help(info)) names.push_back(name_of(info));
    each_variable(info, [&](const VARDESC& variable) {
      if (!has_help(info, variable.memid)) {
        names.push_back(name_of(info) + "." + name_of(info, variable.memid));
      }
    });
    if (kind != TKIND_DISPATCH) return;
    each_function(info, [&](const FUNCDESC& function) {
      const bool own = function.oVft >= kFirstSlot * static_cast<int>(sizeof(void*));
      const bool is_event = (Attributes(info)->wTypeFlags & TYPEFLAG_FDUAL) == 0;
      if ((own || is_event) && !has_help(info, function.memid)) {
        names.push_back(name_of(info) + "." + name_of(info, function.memid));
      }
    });
  });
  return names;
}

}  // namespace qv::tests
