#pragma once

#include "base/ByteSink.h"
#include "evidence/PageContent.h"

#include <string>
#include <string_view>

namespace cirrovane {

/// Writes the page for a person: one HTML file that needs nothing else and asks no network. It runs no script but its
/// own, and can be read without. False when the sink refused a part of it.
bool writePage(const PageContent& content, const ByteSink& sink);

/// The beginning of the page as plain lines.
std::string pageLines(const PageContent& content, std::size_t mostBlockers);

/// Text of a packet as HTML shows it: harmless (displayText), and never markup. Very long text is cut.
std::string htmlText(std::string_view text);

}  // namespace cirrovane
