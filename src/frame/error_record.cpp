#include "frame/error_record.h"

namespace qv::frame {
namespace {

// Passing a text by value leaves it the giver's.
BSTR lent(const Text& text) noexcept { return const_cast<wchar_t*>(text.data()); }

}  // namespace

void QVtError::CopyTo(const Object<_QVtError>& ErrMgr) const {
  check(ErrMgr->put_Description(lent(Description)));
  check(ErrMgr->put_HelpContext(HelpContext));
  check(ErrMgr->put_HelpFile(lent(HelpFile)));
  check(ErrMgr->put_HelpId(lent(HelpId)));
  check(ErrMgr->put_LastDLLError(LastDLLError));
  check(ErrMgr->put_Number(Number));
  check(ErrMgr->put_Source(lent(Source)));
  check(ErrMgr->put_Locked(Locked));
  check(ErrMgr->put_UserId(lent(UserId)));
}

}  // namespace qv::frame
