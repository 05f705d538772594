#include "qvflt/commands.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "console/console.h"
#include "console/file_streams.h"
#include "console/json.h"
#include "native/zlog/bit_walk.h"

namespace qv::qvflt {
namespace {

using namespace native::zlog;
using console::Failure;
using console::InputFile;
using console::OutputFile;
using console::Path;
using console::Stream;
using console::write;

std::string quoted(const Path& path) { return "\"" + console::text_of_path(path) + "\""; }

const char* text_of(Kind kind) {
  switch (kind) {
    case Kind::saved:
      return "saved";
    case Kind::older:
      return "older";
    case Kind::raw:
      return "raw";
  }
  return "";
}

const char* text_of(ImageBody body) { return body == ImageBody::kWords ? "words" : "numbers"; }

std::uint64_t length_of(const Path& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    throw Failure(quoted(path) + ": there is no such file");
  }
  const std::uintmax_t length = std::filesystem::file_size(path, error);
  if (error) throw Failure(quoted(path) + " can't be opened");
  return length;
}

// The images of a file, counted from 1.
class FilterFile {
 public:
  explicit FilterFile(const Options& options)
      : path_(options.source),
        length_bytes_(length_of(path_)),
        kind_(options.from ? *options.from : recognised_kind()),
        file_(path_),
        reader_(file_, length_bytes_, kind_, options.bits) {
    require_open(file_);
  }

  Kind kind() const { return kind_; }
  std::int64_t number() const { return number_; }

  std::optional<Image> next() {
    ++number_;
    try {
      return reader_.next();
    } catch (const Failure& failure) {
      throw Failure(quoted(path_) + ": image " + std::to_string(number_) + ": " + failure.what());
    }
  }

  Image at(std::int64_t number) {
    auto image = next();
    while (image && number_ < number) image = next();
    if (!image) throw Failure(quoted(path_) + " has no image " + std::to_string(number));
    return *std::move(image);
  }

 private:
  void require_open(const InputFile& file) const {
    if (!file.is_open()) throw Failure(quoted(path_) + " can't be opened");
  }

  Kind recognised_kind() const {
    InputFile file(path_);
    require_open(file);
    const auto kind = recognised(file, length_bytes_);
    if (!kind) {
      throw Failure(quoted(path_) + " holds neither saved nor older images; for a raw one, say so");
    }
    return *kind;
  }

  const Path& path_;
  std::uint64_t length_bytes_;
  Kind kind_;
  InputFile file_;
  ImageReader reader_;
  std::int64_t number_ = 0;
};

std::string column(const std::string& text, std::size_t columns) {
  return std::string(columns - std::min(columns, text.size()), ' ') + text;
}

std::string row(const std::string& image, const std::string& kind, const std::string& body,
                const std::string& bits, const std::string& records, const std::string& bytes) {
  return column(image, 6) + "  " + kind + std::string(7 - kind.size(), ' ') + body +
         std::string(9 - body.size(), ' ') + column(bits, 10) + column(records, 12) +
         column(bytes, 12) + "\n";
}

std::string row_of(std::int64_t number, const Image& image) {
  return row(std::to_string(number), text_of(image.kind),
             image.kind == Kind::saved ? text_of(image.body) : "", std::to_string(image.map.bits()),
             std::to_string(image.records), std::to_string(image.size_bytes));
}

std::string json_of(std::int64_t number, const Image& image) {
  const auto member = [](const char* name, std::uint64_t value) {
    return std::string(", \"") + name + "\": " + std::to_string(value);
  };
  return R"({"image": )" + std::to_string(number) + R"(, "kind": ")" + text_of(image.kind) + '"' +
         (image.kind == Kind::saved ? std::string(R"(, "body": ")") + text_of(image.body) + '"'
                                    : "") +
         member("offset", image.offset_bytes) + member("bytes", image.size_bytes) +
         member("bits", static_cast<std::uint64_t>(image.map.bits())) +
         member("records", image.records) + "}";
}

// Collects what is said, and says it in pieces that are worth a call.
class Sayer {
 public:
  Sayer() = default;
  Sayer(const Sayer&) = delete;
  Sayer& operator=(const Sayer&) = delete;
  ~Sayer() { write(Stream::output, text_); }

  void say(std::string_view text) {
    constexpr std::size_t kPiece = std::size_t{1} << 16;
    text_ += text;
    if (text_.size() < kPiece) return;
    write(Stream::output, text_);
    text_.clear();
  }

 private:
  std::string text_;
};

std::string json_text(std::string_view utf8) {
  return console::json_text(console::path_of_text(utf8).u16string());
}

bool info_as_json(FilterFile& file) {
  Sayer sayer;
  sayer.say("{\n  \"images\": [");
  std::string error;
  try {
    const char* between = "\n";
    while (const auto image = file.next()) {
      sayer.say(between + std::string("    ") + json_of(file.number(), *image));
      between = ",\n";
    }
  } catch (const Failure& failure) {
    error = failure.what();
  }
  sayer.say("\n  ]" + (error.empty() ? error : ",\n  \"error\": " + json_text(error)) + "\n}\n");
  if (!error.empty()) write(Stream::error, "qvflt: " + error + "\n");
  return error.empty();
}

}  // namespace

bool info(const Options& options) {
  FilterFile file(options);
  if (options.is_json) return info_as_json(file);
  Sayer sayer;
  sayer.say(row("image", "kind", "body", "bits", "records", "bytes"));
  while (const auto image = file.next()) sayer.say(row_of(file.number(), *image));
  return true;
}

bool list(const Options& options) {
  const std::int32_t number = options.image.value_or(1);
  const Image image = FilterFile(options).at(number);
  Sayer sayer;
  const char* between = "";
  if (options.is_json) {
    sayer.say("{\"image\": " + std::to_string(number) +
              ", \"bits\": " + std::to_string(image.map.bits()) + ", \"records\": [");
  }
  for_each_set(image.map.view(), [&](std::uint32_t bit) {
    sayer.say(between + std::to_string(bit + 1));
    between = options.is_json ? ", " : "\n";
  });
  if (options.is_json) {
    sayer.say("]}\n");
  } else if (image.records > 0) {
    sayer.say("\n");
  }
  return true;
}

bool convert(const Options& options) {
  const auto choice = options.body == Body::words ? BodyChoice::words : BodyChoice::shorter;
  const Path folder = std::filesystem::absolute(options.target).parent_path();
  OutputFile target(console::unused_name(folder));
  if (!target.is_open()) throw Failure("no file can be made beside " + quoted(options.target));
  std::int64_t images = 0;
  const auto put = [&](const Image& image) {
    const ConstBitSpan set = image.map.view();
    ++images;
    if (options.to == Kind::raw && images > 1) {
      throw Failure(quoted(options.source) +
                    " has more than one image, and a raw one can't be told from the next");
    }
    if (options.body == Body::numbers && ImageEncoder(set).head().body != ImageBody::kBitNumbers) {
      throw Failure("the numbers of " + std::to_string(image.records) + " records of " +
                    std::to_string(set.bits) + " bits are no shorter than the words");
    }
    if (!write_image(target, options.to, set, choice)) {
      throw Failure(quoted(options.target) + " can't be written; is the disk full?");
    }
  };
  {
    // Closed before the target gets its name, which can be that of the source.
    FilterFile source(options);
    if (options.image) {
      put(source.at(*options.image));
    } else {
      while (const auto image = source.next()) put(*image);
    }
  }
  const std::int64_t size_bytes = target.position() - 1;
  if (!target.close()) {
    throw Failure(quoted(options.target) + " can't be written; is the disk full?");
  }
  if (!target.keep_as(options.target)) {
    throw Failure(quoted(options.target) + " can't be replaced");
  }
  if (!options.is_quiet) {
    write(Stream::output, std::to_string(images) + (images == 1 ? " image, " : " images, ") +
                              std::to_string(size_bytes) + " bytes\n");
  }
  return true;
}

}  // namespace qv::qvflt
