#pragma once
/// Output for machines, keys in a fixed order: one document for each run, but
/// one for each thing that comes where a command doesn't know when it ends.

#include <nlohmann/json_fwd.hpp>
#include <string>

using Json = nlohmann::ordered_json;

/// A value for people: a text without quotes, made visible.
std::string ToText(const Json& value);

/// Writes the document to the standard output, followed by a line feed. Bytes
/// that are no UTF-8, which cameras may send, become the replacement character.
void PrintJson(const Json& document);

/// As above, on one line, and at once. Raises when it can't be written.
void PrintJsonLine(const Json& document);

/// Writes an object of objects for people: each a heading with its values below.
/// What is null or empty is left out.
void PrintSections(const Json& document);
