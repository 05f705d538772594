#include "automation/run_time_error.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <stdexcept>

namespace qv {
namespace {

struct ErrorText {
  Long number;
  const wchar_t* text;
};

// In order of number, for the binary search below.
constexpr ErrorText kTexts[] = {
    {3, L"Return without GoSub"},
    {5, L"Invalid procedure call or argument"},
    {6, L"Overflow"},
    {7, L"Out of memory"},
    {9, L"Subscript out of range"},
    {10, L"This array is fixed or temporarily locked"},
    {11, L"Division by zero"},
    {13, L"Type mismatch"},
    {14, L"Out of string space"},
    {16, L"Expression too complex"},
    {17, L"Can't perform requested operation"},
    {18, L"User interrupt occurred"},
    {20, L"Resume without error"},
    {28, L"Out of stack space"},
    {35, L"Sub or Function not defined"},
    {47, L"Too many DLL application clients"},
    {48, L"Error in loading DLL"},
    {49, L"Bad DLL calling convention"},
    {51, L"Internal error"},
    {52, L"Bad file name or number"},
    {53, L"File not found"},
    {54, L"Bad file mode"},
    {55, L"File already open"},
    {57, L"Device I/O error"},
    {58, L"File already exists"},
    {59, L"Bad record length"},
    {61, L"Disk full"},
    {62, L"Input past end of file"},
    {63, L"Bad record number"},
    {67, L"Too many files"},
    {68, L"Device unavailable"},
    {70, L"Permission denied"},
    {71, L"Disk not ready"},
    {74, L"Can't rename with different drive"},
    {75, L"Path/File access error"},
    {76, L"Path not found"},
    {91, L"Object variable or With block variable not set"},
    {92, L"For loop not initialized"},
    {93, L"Invalid pattern string"},
    {94, L"Invalid use of Null"},
    {321, L"Invalid file format"},
    {322, L"Can't create necessary temporary file"},
    {325, L"Invalid format in resource file"},
    {380, L"Invalid property value"},
    {381, L"Invalid property array index"},
    {382, L"Set not supported at runtime"},
    {383, L"Set not supported (read-only property)"},
    {385, L"Need property array index"},
    {387, L"Set not permitted"},
    {393, L"Get not supported at runtime"},
    {394, L"Get not supported (write-only property)"},
    {422, L"Property not found"},
    {423, L"Property or method not found"},
    {424, L"Object required"},
    {429, L"ActiveX component can't create object"},
    {430, L"Class does not support Automation or does not support expected interface"},
    {432, L"File name or class name not found during Automation operation"},
    {438, L"Object doesn't support this property or method"},
    {440, L"Automation error"},
    {442,
     L"Connection to type library or object library for remote process has been lost. Press OK "
     L"for dialog to remove reference."},
    {443, L"Automation object does not have a default value"},
    {445, L"Object doesn't support this action"},
    {446, L"Object doesn't support named arguments"},
    {447, L"Object doesn't support current locale setting"},
    {448, L"Named argument not found"},
    {449, L"Argument not optional"},
    {450, L"Wrong number of arguments or invalid property assignment"},
    {451,
     L"Property let procedure not defined and property get procedure did not return an "
     L"object"},
    {452, L"Invalid ordinal"},
    {453, L"Specified DLL function not found"},
    {454, L"Code resource not found"},
    {455, L"Code resource lock error"},
    {457, L"This key is already associated with an element of this collection"},
    {458, L"Variable uses an Automation type not supported in Visual Basic"},
    {459, L"Object or class does not support the set of events"},
    {460, L"Invalid clipboard format"},
    {461, L"Method or data member not found"},
    {462, L"The remote server machine does not exist or is unavailable"},
    {463, L"Class not registered on local machine"},
    {481, L"Invalid picture"},
    {482, L"Printer error"},
    {735, L"Can't save file to TEMP"},
    {744, L"Search text not found"},
    {746, L"Replacements too long"},
};

struct Translation {
  HRESULT result;
  Long number;
};

constexpr Translation kTranslations[] = {
    {E_NOTIMPL, 445},
    {E_NOINTERFACE, 430},
    {E_OUTOFMEMORY, 7},
    {E_INVALIDARG, 5},
    {E_POINTER, 5},
    {E_ACCESSDENIED, 70},
    {DISP_E_UNKNOWNINTERFACE, 438},
    {DISP_E_MEMBERNOTFOUND, 438},
    {DISP_E_UNKNOWNNAME, 438},
    {DISP_E_PARAMNOTFOUND, 448},
    {DISP_E_TYPEMISMATCH, 13},
    {DISP_E_BADVARTYPE, 458},
    {DISP_E_NONAMEDARGS, 446},
    {DISP_E_OVERFLOW, 6},
    {DISP_E_BADINDEX, 9},
    {DISP_E_UNKNOWNLCID, 447},
    {DISP_E_ARRAYISLOCKED, 10},
    {DISP_E_BADPARAMCOUNT, 450},
    {DISP_E_PARAMNOTOPTIONAL, 449},
    {DISP_E_NOTACOLLECTION, 451},
    {DISP_E_DIVBYZERO, 11},
    {DISP_E_EXCEPTION, kAutomationError},
    {REGDB_E_CLASSNOTREG, 429},
    {CLASS_E_CLASSNOTAVAILABLE, 429},
    {CO_E_SERVER_EXEC_FAILURE, 429},
    {MK_E_UNAVAILABLE, 429},
    {CO_E_CLASSSTRING, 429},
    {STG_E_FILENOTFOUND, 53},
    {STG_E_PATHNOTFOUND, 76},
    {STG_E_TOOMANYOPENFILES, 67},
    {STG_E_ACCESSDENIED, 70},
    {STG_E_SHAREVIOLATION, 70},
    {STG_E_LOCKVIOLATION, 70},
    {STG_E_INSUFFICIENTMEMORY, 7},
    {STG_E_FILEALREADYEXISTS, 58},
    {STG_E_MEDIUMFULL, 61},
};

constexpr auto kErrorHigh = static_cast<HRESULT>(0x800A0000);
constexpr HRESULT kHighMask = static_cast<HRESULT>(0xFFFF0000);

RunTimeError simple_error(Long number) noexcept {
  // Memory may be what is short: then the number travels alone.
  RunTimeError error;
  error.number = number;
  try {
    error.description = Text(run_time_error_text(number));
  } catch (...) {
    return error;
  }
  return error;
}

}  // namespace

std::wstring_view run_time_error_text(Long number) noexcept {
  const auto* row = std::ranges::lower_bound(kTexts, number, {}, &ErrorText::number);
  if (row != std::end(kTexts) && row->number == number) return row->text;
  return L"Application-defined or object-defined error";
}

void raise(Long number) {
  // A RunTimeError of its own allocates its texts, which can't be done when string space is out.
  if (number == kOutOfStringSpace) throw std::length_error("string space");
  raise(RunTimeError{.number = number});
}

void raise(RunTimeError error) {
  if (error.number == 0 || error.number > 0xFFFF) raise(kInvalidProcedureCall);
  if (error.description.empty()) error.description = Text(run_time_error_text(error.number));
  throw error;  // NOLINT(misc-throw-by-value-catch-by-reference): it is a value
}

HRESULT to_hresult(Long number) noexcept {
  if (number < 0) return number;
  return kErrorHigh | (number & 0xFFFF);
}

Long to_error_number(HRESULT result) noexcept {
  if ((result & kHighMask) == kErrorHigh) return result & 0xFFFF;
  const auto* row = std::ranges::find(kTranslations, result, &Translation::result);
  return row != std::end(kTranslations) ? row->number : result;
}

void check(HRESULT result) {
  if (FAILED(result)) raise(to_error_number(result));
}

RunTimeError current_run_time_error() noexcept {
  try {
    throw;
  } catch (RunTimeError& error) {
    return std::move(error);
  } catch (const std::bad_alloc&) {
    return simple_error(kOutOfMemory);
  } catch (const std::length_error&) {
    return simple_error(kOutOfStringSpace);
  } catch (...) {
    return simple_error(kAutomationError);
  }
}

}  // namespace qv
