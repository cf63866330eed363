#pragma once

#include <functional>
#include <string_view>

namespace cirrovane {

/// Takes written bytes in pieces; answers false when it can take no more.
using ByteSink = std::function<bool(std::string_view)>;

/// Writes a whole document into a sink; answers false when the sink refused a part of it.
using ByteProducer = std::function<bool(const ByteSink&)>;

}  // namespace cirrovane
