#pragma once

#include "base/JSONWriter.h"
#include "evidence/Evidence.h"
#include "evidence/Page.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace cirrovane::test {

/// What a maker makes with names hidden in a way; a failure's sentence in place of what is none.
inline std::string packetText(const EvidenceMaker& make, Redaction redaction) {
  std::string text;
  const auto failure = make({.redaction = redaction, .packet = [&text](std::string_view piece) {
                               text += piece;
                               return true;
                             }});
  return failure ? "Failed: " + failure->message : text;
}

inline std::string redacted(const ProofPacket& packet, Redaction redaction, const std::string& home = {}) {
  return packetText(evidenceOf(packet, home), redaction);
}

inline std::string redacted(std::string_view packet, Redaction redaction) {
  return packetText(evidenceFrom(byteSourceOf(packet)), redaction);
}

inline std::string pageText(const EvidenceMaker& make, Redaction redaction) {
  PageContent content;
  std::string html;
  const auto failure = make({.redaction = redaction, .page = &content});
  if (failure) {
    return "Failed: " + failure->message;
  }
  EXPECT_TRUE(writePage(content, [&html](std::string_view piece) {
    html += piece;
    return true;
  }));
  return html;
}

}  // namespace cirrovane::test
