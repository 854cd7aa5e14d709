#pragma once
/// Environment variables, folders and file names.

#include "Base/Export.h"
#include "Base/GCString.h"
#include "Base/GCStringVector.h"

namespace GenICam_3_0_ORVANE {

/// Whether the variable is set, even to an empty text.
OV_ENGINE_API bool DoesEnvironmentVariableExist(const gcstring& name);
/// Looks up a variable.
/// @return false, with `value` unchanged, if it isn't set
OV_ENGINE_API bool GetValueOfEnvironmentVariable(const gcstring& name, gcstring& value);
/// Returns the value of a variable.
/// @throws RuntimeException if it isn't set
OV_ENGINE_API gcstring GetValueOfEnvironmentVariable(const gcstring& name);

/// Replaces each "$(NAME)" by the value of the variable.
/// @param replaceBlanks  also replaces each blank by "%20"
/// @throws RuntimeException for a variable that isn't set
OV_ENGINE_API void ReplaceEnvironmentVariables(gcstring& text, bool replaceBlanks = false);

/// Returns the real path of the program or library that a function is in; empty if that can't be
/// found out.
OV_ENGINE_API gcstring GetModulePathFromFunction(void* function);

/// Appends the names, without folders, of the files that match a pattern.
/// @param pattern          may hold "*", "?" and "$(NAME)" for a variable
/// @param onlyDirectories  leaves out everything that the system knows not to be a folder
/// @throws RuntimeException if reading fails
OV_ENGINE_API void GetFiles(const gcstring& pattern, gcstring_vector& files,
                            bool onlyDirectories = false);

/// Appends the pieces of the text between runs of delimiters.
OV_ENGINE_API void Tokenize(const gcstring& text, gcstring_vector& tokens,
                            const gcstring& delimiters = " ");

/// Sets the folder of the cache of descriptions. The getters here return what was set, else the
/// value of the environment variable without a trailing separator.
OV_ENGINE_API void SetGenICamCacheFolder(const gcstring& folder);
/// Returns that folder; the variable is GENICAM_CACHE_V3_0.
/// @throws RuntimeException if neither is set
OV_ENGINE_API gcstring GetGenICamCacheFolder();
/// Sets the file with the configuration of the logging library.
OV_ENGINE_API void SetGenICamLogConfig(const gcstring& file);
/// Returns that file; the variable is GENICAM_LOG_CONFIG_V3_0.
/// @throws RuntimeException if neither is set
OV_ENGINE_API gcstring GetGenICamLogConfig();
/// Sets the folder of the Camera Link protocol libraries.
OV_ENGINE_API void SetGenICamCLProtocolFolder(const gcstring& folder);
/// Returns that folder; the variable is GENICAM_CLPROTOCOL.
/// @throws RuntimeException if neither is set
OV_ENGINE_API gcstring GetGenICamCLProtocolFolder();

/// Replaces each "\" by "/" and escapes the characters that a URL can't hold.
OV_ENGINE_API gcstring UrlEncode(const gcstring& text);
/// Replaces escapes by their bytes. What isn't an escape stays.
OV_ENGINE_API gcstring UrlDecode(const gcstring& text);

}  // namespace GenICam_3_0_ORVANE
