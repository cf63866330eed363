// A proof packet that somebody sent: it is read in a stream, as strictly as a whole document is, and what comes of it
// without its names is a packet again.

#include "evidence/Evidence.h"
#include "evidence/Page.h"
#include "fuzz/RoundTrip.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace cirrovane {
namespace {

std::optional<std::string> made(std::string_view packet, Redaction redaction, PageContent* page = nullptr) {
  std::string text;
  const auto failure = evidenceFrom(byteSourceOf(packet))({.redaction = redaction,
                                                           .packet =
                                                               [&text](std::string_view piece) {
                                                                 text += piece;
                                                                 return true;
                                                               },
                                                           .page = page});
  if (failure && (failure->message.find("comes twice") != std::string::npos ||
                  failure->message.find("too long") != std::string::npos)) {
    // What a stream alone refuses.
    return std::nullopt;
  }
  require(failure.has_value() == !decodeJSON<ProofPacket>(packet).has_value(), "a stream is as strict as a document");
  return failure ? std::nullopt : std::optional(text);
}

void requireEvidence(std::string_view bytes) {
  const std::optional<std::string> plain = made(bytes, Redaction::none);
  if (!plain) {
    return;
  }
  std::optional<ProofPacket> packet = decodeJSON<ProofPacket>(bytes);
  std::string text;
  writeProofPacket(*packet, [&text](std::string_view piece) {
    text += piece;
    return true;
  });
  // Its lists may have come in another order, and its members' order is that of the first packet.
  require(encodeJSON(*decodeJSON<ProofPacket>(*plain)) + "\n" == text, "a stream reads what a document says");
  for (const Redaction redaction : {Redaction::names, Redaction::strict}) {
    PageContent page;
    const std::optional<std::string> hidden = made(bytes, redaction, &page);
    require(hidden.has_value(), "what can be read can be redacted");
    require(made(*hidden, redaction) == hidden, "hiding names twice is hiding them once");
    require(writePage(page, [](std::string_view) { return true; }), "a page can be made of it");
  }
}

}  // namespace
}  // namespace cirrovane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::requireEvidence({reinterpret_cast<const char*>(data), size});
  return 0;
}
