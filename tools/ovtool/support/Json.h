#pragma once
/// Output for machines, keys in a fixed order: one document for each run, but
/// one for each thing that comes where a command doesn't know when it ends.

#include <nlohmann/json_fwd.hpp>

using Json = nlohmann::ordered_json;

/// Writes the document to the standard output, with a line feed behind it. Bytes
/// that are no UTF-8, which cameras may send, become the replacement character.
void PrintJson(const Json& document);

/// As above, on one line, and at once.
void PrintJsonLine(const Json& document);

/// Writes an object of objects for people: each a heading with its values below.
/// What is null or empty is left out.
void PrintSections(const Json& document);
