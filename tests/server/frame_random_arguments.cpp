#include "server/frame_random_arguments.h"

#include <iterator>

namespace qv::tests {
namespace {

constexpr LONG kNumbers[] = {0,          1,
                             -1,         2,
                             3,          5,
                             10,         31,
                             32,         100,
                             255,        256,
                             1000,       32767,
                             32768,      -32768,
                             65535,      65536,
                             -5,         -70,
                             70000,      100000,
                             20000,      29999,
                             2147483647, -2147483647 - 1};
constexpr double kReals[] = {0, 0.5, -0.5, 1.5, 2.5, 1e10, -1e10, 1e300, -1e300, 1e-300, 36526.75};
// Nothing here names a file, a key or a program that exists.
const std::wstring kTexts[] = {L"",
                               L" ",
                               L"a",
                               L"12",
                               L"-7.5",
                               L"1e400",
                               L"True",
                               L"x y z",
                               L"\x00e8\x0161",
                               L"zz:?*<>|",
                               std::wstring(3, L'\0'),
                               std::wstring(L"a\0b", 3),
                               std::wstring(300, L'x'),
                               std::wstring(70000, L'\x00ff')};

// A foreign object: every property is a text, every method does nothing.
class Foreign final : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* ids) override {
    return *ids = 1, S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (result != nullptr) {
      result->vt = VT_BSTR;
      result->bstrVal = SysAllocString(L"text");
    }
    return S_OK;
  }
};
Foreign foreign;

}  // namespace

VARIANT RandomArguments::array() {
  constexpr VARTYPE kElements[] = {VT_VARIANT, VT_UI1, VT_I2, VT_I4, VT_BSTR, VT_R8, VT_DISPATCH};
  VARIANT made{};
  const VARTYPE element = kElements[below(std::size(kElements))];
  made.vt = static_cast<VARTYPE>(VT_ARRAY | element);
  if (below(5) == 0) return made;  // not allocated
  SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(below(6)), below(3) - 1}, {2, 0}};
  const UINT dimensions = below(6) == 0 ? 2 : 1;
  made.parray = SafeArrayCreate(element, dimensions, bounds);
  if (element != VT_VARIANT || dimensions != 1) return made;
  for (ULONG i = 0; i < bounds[0].cElements; ++i) {
    LONG index = bounds[0].lLbound + static_cast<LONG>(i);
    VARIANT content = value();
    SafeArrayPutElement(made.parray, &index, &content);
    VariantClear(&content);
  }
  return made;
}

VARIANT RandomArguments::object() {
  VARIANT made{};
  made.vt = below(4) == 0 ? VT_UNKNOWN : VT_DISPATCH;
  switch (below(5)) {
    case 0:
      return made;  // Nothing
    case 1:
    case 2:
      made.pdispVal = &foreign;
      return made;
    default:
      break;
  }
  const CLSID kinds[] = {CLSID_kwCollection, CLSID_QVtError, CLSID_QvtBloomFilter, CLSID_QvSort,
                         CLSID_QvtRect};
  entry_points_.factory(kinds[below(std::size(kinds))])
      ->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&made.pdispVal));
  return made;
}

VARIANT RandomArguments::value() {
  VARIANT made{};
  const LONG number = kNumbers[below(std::size(kNumbers))];
  const double real = kReals[below(std::size(kReals))];
  const std::wstring& text = kTexts[below(std::size(kTexts))];
  constexpr VARTYPE kTypes[] = {VT_EMPTY, VT_NULL,    VT_ERROR, VT_I2,   VT_I4,       VT_I4,
                                VT_R4,    VT_R8,      VT_CY,    VT_DATE, VT_BSTR,     VT_BSTR,
                                VT_BOOL,  VT_I1,      VT_UI1,   VT_UI2,  VT_UI4,      VT_INT,
                                VT_UINT,  VT_DECIMAL, VT_I8,    VT_UI8,  VT_DISPATCH, VT_ARRAY};
  made.vt = kTypes[below(std::size(kTypes))];
  switch (made.vt) {
    case VT_ERROR:
      made.scode = below(3) == 0 ? E_FAIL : DISP_E_PARAMNOTFOUND;
      break;
    case VT_R4:
      made.fltVal = static_cast<float>(number);
      break;
    case VT_R8:
    case VT_DATE:
      made.dblVal = real;
      break;
    case VT_BSTR:
      if (below(6) != 0) {
        made.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
      }
      break;
    case VT_BOOL:
      made.boolVal = below(2) == 0 ? VARIANT_TRUE : VARIANT_FALSE;
      break;
    case VT_DECIMAL:
      VarDecFromI4(number, &made.decVal);
      made.vt = VT_DECIMAL;
      break;
    case VT_DISPATCH:
      return object();
    case VT_ARRAY:
      return array();
    default:
      made.llVal = number;
      break;
  }
  return made;
}

VARIANT RandomArguments::argument() {
  const int kind = below(10);
  owned_.push_back(value());
  VARIANT& owned = owned_.back();
  VARIANT made{};
  if (kind < 5) return owned;
  const bool has_type = owned.vt != VT_EMPTY && owned.vt != VT_NULL;
  if (kind == 5 && has_type) {  // a reference to a typed variable
    made.vt = static_cast<VARTYPE>(VT_BYREF | owned.vt);
    made.byref = owned.vt == VT_DECIMAL ? static_cast<void*>(&owned) : &owned.llVal;
    return made;
  }
  if (kind == 6 && below(4) == 0) {  // a reference that leads nowhere
    made.vt = VT_BYREF | VT_I4;
    return made;
  }
  made.vt = VT_BYREF | VT_VARIANT;
  made.pvarVal = &owned;
  if (kind == 7 && has_type) {  // a variable that is itself such a reference
    owned_.push_back({});
    VARIANT& reference = owned_.back();
    reference.vt = static_cast<VARTYPE>(VT_BYREF | owned.vt);
    reference.byref = owned.vt == VT_DECIMAL ? static_cast<void*>(&owned) : &owned.llVal;
    made.pvarVal = &reference;
  }
  return made;
}

void RandomArguments::clear() {
  for (VARIANT& variable : owned_) EXPECT_EQ(VariantClear(&variable), S_OK);
  owned_.clear();
}

}  // namespace qv::tests
