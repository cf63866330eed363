#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

// The facts of the Mac that a folder stands for: which there are, and what values they take.

namespace cirrovane {

/// The file of the facts, in the folder.
inline constexpr std::string_view kMacRootFactsFile = "machine.json";

/// The values that a fact takes.
enum class FactKind {
  absolutePath,
  object,
  boolean,
  text,
  number,
  listOfTexts,
  listOfNumbers,
  listOfObjects,
};

/// A fact about a machine that a Mac's system would know.
struct MacRootFact {
  std::string_view key;
  FactKind kind;
  /// A value, for a person.
  std::string_view example;
};

/// All there are; every one may be missing.
std::span<const MacRootFact> macRootFacts();

/// The fact of a key; null when there is none.
const MacRootFact* findMacRootFact(std::string_view key);

/// A kind in words: "an absolute path".
std::string_view wordsFor(FactKind kind);

bool isOfKind(const nlohmann::json& value, FactKind kind);
bool isOfKind(const nlohmann::ordered_json& value, FactKind kind);

/// What is wrong with a parsed description, which is discarded where the text was no JSON; absent when nothing is. Keys
/// that are no facts are no concern of ours.
std::optional<std::string> complaintAboutFacts(const nlohmann::json& description);

}  // namespace cirrovane
