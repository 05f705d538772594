// Jobs by number in every order of calls, with refusals of the spooler, against a model of what an
// object keeps of them.
#include <map>
#include <random>
#include <string>

#include "server/client.h"
#include "server/spooler_stand_in.h"

namespace qv::tests {
namespace {

// The pages of a job count as open where its beginning was done, and as ended where its end was
// tried, whatever became of it.
struct ModelJob {
  bool is_aborted = false;
  bool has_open_page = false;
};

// What an object should do: the result of a call (true = done), what the spooler is asked, and the
// Source that is left in the error record.
class Model {
 public:
  void refuse(const std::string& service) { refused_ = service; }
  std::vector<std::string> calls() { return std::exchange(calls_, {}); }
  std::wstring source() { return std::exchange(source_, {}); }

  bool open() {
    ++last_;
    calls_.push_back("OpenPrinter Prn1");
    if (refused_ == "OpenPrinter") {
      --last_;
      return failed(L" < KwRtLibMod.DirectOpenPrinter");
    }
    calls_.push_back("StartDoc " + std::to_string(last_) + " 1 Doc|(none)|(none)");
    if (refused_ == "StartDoc") {
      calls_.push_back("Abort " + std::to_string(last_));
      calls_.push_back("Close " + std::to_string(last_));
      return failed(L" < KwRtLibMod.DirectOpenPrinter");
    }
    jobs_[last_] = {};
    return true;
  }
  bool start_page(LONG number) {
    if (!jobs_.contains(number)) return failed(L"KwRtLib.DirectStartPage");
    if (!asks("StartPage", number)) return failed(L" < KwRtLibMod.DirectStartPage");
    jobs_[number].has_open_page = true;
    return true;
  }
  bool end_page(LONG number) {
    if (!jobs_.contains(number)) return failed(L"KwRtLib.DirectEndPage");
    jobs_[number].has_open_page = false;
    return asks("EndPage", number) || failed(L" < KwRtLibMod.DirectEndPage");
  }
  bool write(LONG number) {
    if (!jobs_.contains(number)) return failed(L"KwRtLib.DirectWritePrinter");
    return asks("Write", number, " 1") || failed(L" < KwRtLibMod.DirectWritePrinter");
  }
  bool close(LONG number) {
    if (!jobs_.contains(number)) return failed(L"KwRtLib.DirectClosePrinter");
    if (jobs_[number].has_open_page && !end_page(number)) {
      return failed(L" < KwRtLibMod.DirectClosePrinter");
    }
    if (!asks("EndDoc", number)) return failed(L" < KwRtLibMod.DirectClosePrinter");
    calls_.push_back("Close " + std::to_string(number));
    jobs_.erase(number);
    return true;
  }
  bool abort(LONG number) {
    if (!jobs_.contains(number)) return failed(L"KwRtLib.DirectAbortPrinter");
    if (!jobs_[number].is_aborted) {
      calls_.push_back("Abort " + std::to_string(number));
      calls_.push_back("Close " + std::to_string(number));
    }
    jobs_[number].is_aborted = true;
    return true;
  }
  bool close_all() {
    for (const auto& [number, job] : std::map<LONG, ModelJob>(jobs_)) abort(number);
    jobs_.clear();
    return true;
  }

 private:
  bool asks(const std::string& service, LONG number, const std::string& details = "") {
    const bool is_open = !jobs_[number].is_aborted;
    calls_.push_back(service + " " + std::to_string(is_open ? number : 0) + details);
    return is_open && refused_ != service;
  }
  bool failed(const wchar_t* source) {
    source_ += source;
    return false;
  }

  std::map<LONG, ModelJob> jobs_;
  LONG last_ = 0;  // printer that was opened
  std::string refused_;
  std::vector<std::string> calls_;
  std::wstring source_;
};

class Library {
 public:
  bool open() {
    String printer(L"Prn1");
    String document(L"Doc");
    LONG handle = 0;
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(global_->DirectOpenPrinter(&printer, &handle, &document, &failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  using Member = HRESULT (STDMETHODCALLTYPE _KwRtLib::*)(LONG*, VARIANT_BOOL*);
  bool does(Member member, LONG number) {
    VARIANT_BOOL failed = 1;
    EXPECT_EQ((global_.get()->*member)(&number, &failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  bool write(LONG number) {
    String data(L"x");
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(global_->DirectWritePrinter(&number, &data, &failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  bool close_all() {
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(global_->DirectCloseAllPrinters(&failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  // Taken from the record.
  std::wstring source() {
    String text;
    global_->Error_Source(&text);
    global_->Reset_Error();
    return std::wstring(text.view());
  }

 private:
  Pointer<_KwRtLib> global_ = create_global();
};

constexpr const char* kServices[] = {"",         "",          "",      "",        "OpenPrinter",
                                     "StartDoc", "StartPage", "Write", "EndPage", "EndDoc"};

TEST(PrintJobOrder, Every_order_of_calls_does_what_the_model_says) {
  std::mt19937 random(20011);
  const auto below = [&](unsigned limit) { return static_cast<unsigned>(random() % limit); };
  create_global()->Reset_Error();
  for (int round = 0; round < 150; ++round) {
    SpoolerStandIn spooler;
    Library library;
    Model model;
    std::string story;
    for (int step = 0; step < 40; ++step) {
      const std::string refused = kServices[below(std::size(kServices))];
      for (const char* service : kServices) spooler.fail(service, 0);
      spooler.fail(refused, ERROR_ACCESS_DENIED);
      model.refuse(refused);
      const auto number = static_cast<LONG>(below(6));
      const unsigned choice = below(20);
      story += " " + std::to_string(choice) + "(" + std::to_string(number) + refused + ")";
      SCOPED_TRACE(story);
      bool done = false;
      bool expected = false;
      if (choice < 4) {
        expected = model.open();
        done = library.open();
      } else if (choice < 8) {
        expected = model.start_page(number);
        done = library.does(&_KwRtLib::DirectStartPage, number);
      } else if (choice < 11) {
        expected = model.write(number);
        done = library.write(number);
      } else if (choice < 14) {
        expected = model.end_page(number);
        done = library.does(&_KwRtLib::DirectEndPage, number);
      } else if (choice < 17) {
        expected = model.close(number);
        done = library.does(&_KwRtLib::DirectClosePrinter, number);
      } else if (choice < 19) {
        expected = model.abort(number);
        done = library.does(&_KwRtLib::DirectAbortPrinter, number);
      } else {
        expected = model.close_all();
        done = library.close_all();
      }
      ASSERT_EQ(done, expected);
      ASSERT_EQ(spooler.calls(), model.calls());
      ASSERT_EQ(library.source(), model.source());
    }
  }
}

}  // namespace
}  // namespace qv::tests
