#include "host/desk_object.h"

#include <string>
#include <vector>

#include "server/form_control.h"

namespace qv::tests {
namespace {

enum Member : DISPID {
  kControl = 1,
  kForm,
  kSend,
  kTextBy,
  kPlace,
  kFormSize,
  kDevice,
  kFill,
  kCanvas,
  kPixel,
  kPrintQueue,
  kPrinted
};
constexpr const wchar_t* kNames[] = {L"Control", L"Form",      L"Send",        L"Text_By",
                                     L"Place",   L"Form_Size", L"Device",      L"Fill",
                                     L"Canvas",  L"Pixel",     L"Print_Queue", L"Printed"};

const VARIANT& inner(const VARIANT& value) {
  return value.vt == (VT_BYREF | VT_VARIANT) ? *value.pvarVal : value;
}

LONG long_of(const VARIANT& value) {
  VARIANT number;
  VariantInit(&number);
  VariantChangeType(&number, const_cast<VARIANT*>(&inner(value)), 0, VT_I4);
  return number.vt == VT_I4 ? number.lVal : 0;
}

std::wstring text_of(const VARIANT& value) {
  const VARIANT& text = inner(value);
  return text.vt == VT_BSTR ? std::wstring(text.bstrVal, SysStringLen(text.bstrVal)) : L"";
}

HWND window_of(const VARIANT& control) {
  return static_cast<FormControl*>(inner(control).pdispVal)->window();
}

LONG send(HWND window, UINT message, LONG word, const VARIANT& value) {
  const LPARAM parameter = inner(value).vt == VT_BSTR
                               ? reinterpret_cast<LPARAM>(inner(value).bstrVal)
                               : LPARAM{long_of(value)};
  return static_cast<LONG>(SendMessageW(window, message, static_cast<WPARAM>(word), parameter));
}

std::wstring text_by(HWND window, UINT message, LONG word) {
  std::vector<wchar_t> text(4096);
  SendMessageW(window, message, static_cast<WPARAM>(word), reinterpret_cast<LPARAM>(text.data()));
  return text.data();
}

LONG handle_of(HDC device) { return static_cast<LONG>(reinterpret_cast<LONG_PTR>(device)); }

// The system knows some classes only once a library is loaded.
HWND create_window(const std::wstring& window_class, DWORD style, HWND parent) {
  if (window_class.empty()) return nullptr;
  LoadLibraryW(L"riched20.dll");
  LoadLibraryW(L"comctl32.dll");
  return create_control_window(window_class, style, false, parent);
}

LONG make_canvas(LONG width, LONG height) {
  BITMAPINFO info{};
  info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  const HDC canvas = CreateCompatibleDC(nullptr);
  SelectObject(canvas, CreateDIBSection(canvas, &info, DIB_RGB_COLORS, nullptr, nullptr, 0));
  PatBlt(canvas, 0, 0, width, height, WHITENESS);
  return handle_of(canvas);
}

HDC device_of(LONG handle) { return reinterpret_cast<HDC>(static_cast<LONG_PTR>(handle)); }

LONG pixel_of(LONG canvas, LONG x, LONG y) {
  return static_cast<LONG>(GetPixel(device_of(canvas), x, y));
}

void fill(HDC device, const RECT& area, LONG colour) {
  const HBRUSH brush = CreateSolidBrush(static_cast<COLORREF>(colour));
  FillRect(device, &area, brush);
  DeleteObject(brush);
}

}  // namespace

HRESULT DeskObject::QueryInterface(REFIID id, void** object) {
  const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
  *object = known ? static_cast<IDispatch*>(this) : nullptr;
  return known ? S_OK : E_NOINTERFACE;
}

HRESULT DeskObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) {
  ids[0] = 0;
  for (const wchar_t* name : kNames) {
    ++ids[0];
    if (lstrcmpiW(names[0], name) == 0) return S_OK;
  }
  ids[0] = DISPID_UNKNOWN;
  return DISP_E_UNKNOWNNAME;
}

HRESULT DeskObject::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                           EXCEPINFO*, UINT*) {
  VARIANT answer;
  VariantInit(&answer);
  const auto argument = [&](UINT i) -> const VARIANT& {
    return parameters->rgvarg[parameters->cArgs - 1 - i];
  };
  const auto give_number = [&](LONG number) {
    answer.vt = VT_I4;
    answer.lVal = number;
  };
  const auto give_text = [&](const std::wstring& text) {
    answer.vt = VT_BSTR;
    answer.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  };
  switch (id) {
    case kControl: {
      const HWND parent = parameters->cArgs > 2 ? window_of(argument(2)) : form_window();
      answer.vt = VT_DISPATCH;
      answer.pdispVal = new FormControl(
          create_window(text_of(argument(0)), static_cast<DWORD>(long_of(argument(1))), parent));
      break;
    }
    case kForm:
      answer.vt = VT_DISPATCH;
      answer.pdispVal = new FormControl(form_window());
      break;
    case kSend:
      give_number(send(window_of(argument(0)), static_cast<UINT>(long_of(argument(1))),
                       long_of(argument(2)), argument(3)));
      break;
    case kTextBy:
      give_text(text_by(window_of(argument(0)), static_cast<UINT>(long_of(argument(1))),
                        long_of(argument(2))));
      break;
    case kPlace:
      MoveWindow(window_of(argument(0)), long_of(argument(1)), long_of(argument(2)),
                 long_of(argument(3)), long_of(argument(4)), TRUE);
      ShowWindow(form_window(), SW_SHOW);
      break;
    case kFormSize:
      MoveWindow(form_window(), 0, 0, long_of(argument(0)), long_of(argument(1)), TRUE);
      break;
    case kDevice:
      give_number(handle_of(GetDC(window_of(argument(0)))));
      break;
    case kFill:
      fill(device_of(long_of(argument(0))),
           {long_of(argument(1)), long_of(argument(2)), long_of(argument(3)), long_of(argument(4))},
           long_of(argument(5)));
      break;
    case kCanvas:
      give_number(make_canvas(long_of(argument(0)), long_of(argument(1))));
      break;
    case kPixel:
      give_number(pixel_of(long_of(argument(0)), long_of(argument(1)), long_of(argument(2))));
      break;
    case kPrintQueue:
      queue_ =
          std::make_unique<PrintQueue>(text_of(argument(0)).c_str(), text_of(argument(1)).c_str());
      break;
    case kPrinted: {
      const std::string bytes = queue_->output();
      give_text(std::wstring(bytes.begin(), bytes.end()));
      queue_->forget();
      break;
    }
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
  if (result != nullptr) {
    *result = answer;
  } else {
    VariantClear(&answer);
  }
  return S_OK;
}

}  // namespace qv::tests
