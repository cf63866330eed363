#include "evidence/Evidence.h"

#include "base/JSONStream.h"
#include "base/JSONWriter.h"
#include "evidence/PacketParts.h"
#include "evidence/Page.h"
#include "evidence/Redactor.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

namespace cirrovane {
namespace {

constexpr const char* kRefused = "The packet could not be written.";
constexpr std::size_t kPreviewBlockers = 5;

/// Hands each part on, without its names where that is asked for.
class EvidencePass {
 public:
  EvidencePass(const EvidenceForm& form, std::string home) : page_(form.page) {
    if (form.redaction != Redaction::none) {
      redactor_.emplace(form.redaction, std::move(home));
    }
    if (form.packet) {
      writer_ = std::make_unique<JSONWriter>([this, &form](std::string_view piece) {
        isRefused_ = isRefused_ || !form.packet(piece);
        return !isRefused_;
      });
      writer_->beginObject();
    }
  }

  void beginObject(std::string_view key) {
    if (writer_) {
      writer_->key(key);
      writer_->beginObject();
    }
  }
  void endObject() {
    if (writer_) {
      writer_->endObject();
    }
  }
  void beginList(std::string_view key) {
    if (writer_) {
      writer_->key(key);
      writer_->beginArray();
    }
  }
  void endList() {
    if (writer_) {
      writer_->endArray();
    }
  }

  template <class Record>
  void element(const Record& record) {
    if (redactor_) {
      redactElement(*redactor_, record);
    } else {
      handElement(record);
    }
  }
  template <class Value>
  void value(std::string_view key, const Value& value) {
    if constexpr (std::is_same_v<Value, std::string> || std::is_same_v<Value, SystemStatusSnapshot>) {
      if (redactor_) {
        Value redacted = value;
        redactValue(*redactor_, redacted);
        handValue(key, redacted);
        return;
      }
    }
    handValue(key, value);
  }

  /// Whether the sink took all of it.
  bool finish(const ByteSink& sink) {
    if (!writer_) {
      return true;
    }
    writer_->endObject();
    return writer_->finish() && sink("\n");
  }
  bool isRefused() const { return isRefused_; }

 private:
  template <class Record>
  void redactElement(Redactor& redactor, const Record& record) {
    Record redacted = record;
    redactor.redact(redacted);
    handElement(redacted);
  }
  void redactElement(Redactor& redactor, const SyncBlocker& blocker) {
    // There may be very many: the copy's memory is used again.
    blocker_ = blocker;
    redactor.redact(blocker_);
    handElement(blocker_);
  }
  static void redactValue(Redactor& redactor, std::string& summary) { redactor.redactSummary(summary); }
  static void redactValue(Redactor& /*redactor*/, SystemStatusSnapshot& status) { Redactor::redact(status); }

  template <class Record>
  void handElement(const Record& record) {
    if (writer_) {
      writer_->element();
      writer_->write(record);
    }
    if (page_ != nullptr) {
      page_->element(record);
    }
  }
  template <class Value>
  void handValue(std::string_view key, const Value& value) {
    if (writer_) {
      writer_->key(key);
      writer_->write(value);
    }
    if (page_ != nullptr) {
      page_->value(key, value);
    }
  }

  PageContent* page_;
  std::optional<Redactor> redactor_;
  std::unique_ptr<JSONWriter> writer_;
  SyncBlocker blocker_;
  bool isRefused_ = false;
};

/// The packet with its first blockers alone, so that a look at it costs nothing. The lists that come before them are
/// whole, since pseudonyms are numbered from the beginning on.
ProofPacket beginningOf(const ProofPacket& packet) {
  const SyncHealthReport& whole = *packet.report;
  SyncHealthReport report;
  forEachField<SyncHealthReport>([&](const auto& field) {
    if constexpr (!std::is_same_v<std::remove_cvref_t<decltype(report.*field.member)>, std::vector<SyncBlocker>>) {
      report.*field.member = whole.*field.member;
    }
  });
  const std::size_t count = std::min(kPreviewBlockers, whole.blockers.size());
  report.blockers.assign(whole.blockers.begin(), whole.blockers.begin() + static_cast<std::ptrdiff_t>(count));
  return {packet.exportedAt,  Shared(std::move(report)), packet.history,
          packet.diagnostics, packet.incidents,          packet.systemStatus};
}

}  // namespace

EvidenceMaker evidenceOf(const ProofPacket& packet, std::string home) {
  return [&packet, home = std::move(home)](const EvidenceForm& form) -> std::optional<Failure> {
    EvidencePass pass(form, home);
    visitParts(packet, pass);
    return pass.finish(form.packet) ? std::nullopt : std::optional(Failure{kRefused});
  };
}

EvidenceMaker evidenceFrom(ByteSource source) {
  return [source = std::move(source)](const EvidenceForm& form) -> std::optional<Failure> {
    std::optional<Failure> unreadable;
    JSONStream stream([&](std::span<char> space) {
      Result<std::size_t> count = source(space);
      if (!count) {
        unreadable = Failure{count.message()};
      }
      return count;
    });
    EvidencePass pass(form, {});
    if (!readParts(stream, pass)) {
      return unreadable ? unreadable : std::optional(Failure{"This is no proof packet: " + stream.problem() + "."});
    }
    return pass.finish(form.packet) ? std::nullopt : std::optional(Failure{kRefused});
  };
}

std::optional<Failure> saveEvidence(const EvidenceMaker& make, Redaction redaction, const EvidenceFiles& files,
                                    const FileStorage& storage) {
  const auto put = [&](const std::string& path, const ByteProducer& produce) -> std::optional<Failure> {
    if (path == "-") {
      produce(files.output);
      return std::nullopt;
    }
    return storage.writeAtomically(path, FileAccess::asUsual, produce);
  };
  PageContent page;
  EvidenceForm form{.redaction = redaction, .packet = nullptr, .page = files.page ? &page : nullptr};
  std::optional<Failure> failure;
  if (files.packet) {
    const auto notWritten = put(*files.packet, [&](const ByteSink& sink) {
      form.packet = sink;
      failure = make(form);
      return !failure;
    });
    // Why the place takes no more is the place's to say.
    failure = failure && failure->message != kRefused ? failure : notWritten;
  } else {
    failure = make(form);
  }
  if (failure || !files.page) {
    return failure;
  }
  return put(*files.page, [&](const ByteSink& sink) { return writePage(page, sink); });
}

std::string packetPreview(const ProofPacket& packet, const std::string& home, Redaction redaction,
                          std::size_t mostLines) {
  const ProofPacket beginning = beginningOf(packet);
  std::string text;
  evidenceOf(beginning, home)({.redaction = redaction, .packet = [&text](std::string_view piece) {
                                 text += piece;
                                 return true;
                               }});
  std::size_t end = 0;
  for (std::size_t line = 0; line < mostLines && end < text.size(); ++line) {
    end = std::min(text.find('\n', end), text.size() - 1) + 1;
  }
  return text.substr(0, end);
}

std::string pagePreview(const ProofPacket& packet, const std::string& home, Redaction redaction) {
  const ProofPacket beginning = beginningOf(packet);
  PageContent page;
  evidenceOf(beginning, home)({.redaction = redaction, .page = &page});
  return pageLines(page, kPreviewBlockers);
}

}  // namespace cirrovane
