#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace cirrovane::demo {

/// What is wrong with a fact and a value that it is to get; absent when nothing is. null is always right.
std::optional<std::string> complaintAbout(std::string_view key, const nlohmann::ordered_json& value);

/// The facts of a healthy portable Mac.
nlohmann::ordered_json sampleFacts();

/// The file that holds the facts of the Mac in a folder.
std::filesystem::path factsPath(const std::filesystem::path& root);

/// Sets one fact of the Mac in a folder; null removes it.
void setFact(const std::filesystem::path& root, const std::string& key, const nlohmann::ordered_json& value);

void writeFacts(const std::filesystem::path& root, const nlohmann::ordered_json& facts);

}  // namespace cirrovane::demo
