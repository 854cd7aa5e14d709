#pragma once
/// Environment, folders and file names.

#include "Base/Export.h"
#include "Base/GCString.h"
#include "Base/GCStringVector.h"

namespace GenICam_3_0_ORVANE {

OV_ENGINE_API bool DoesEnvironmentVariableExist(const gcstring& name);
/// False, with `value` left alone, when the variable isn't set.
OV_ENGINE_API bool GetValueOfEnvironmentVariable(const gcstring& name, gcstring& value);
/// RuntimeException when the variable isn't set.
OV_ENGINE_API gcstring GetValueOfEnvironmentVariable(const gcstring& name);

/// Puts values in the place of all "$(NAME)". RuntimeException for a variable
/// that isn't set.
/// @param replaceBlanks  also turns each blank into "%20"
OV_ENGINE_API void ReplaceEnvironmentVariables(gcstring& text, bool replaceBlanks = false);

/// The real path of the file that holds a function; empty on any failure.
OV_ENGINE_API gcstring GetModulePathFromFunction(void* function);

/// The names, without folders, of the files that match a pattern, in which
/// "$(NAME)" stands for a variable. RuntimeException when reading fails.
OV_ENGINE_API void GetFiles(const gcstring& pattern, gcstring_vector& files,
                            bool onlyDirectories = false);

/// The pieces between runs of delimiters.
OV_ENGINE_API void Tokenize(const gcstring& text, gcstring_vector& tokens,
                            const gcstring& delimiters = " ");

/// Folder of the node-map cache. The getters give what was set, else the
/// variable GENICAM_CACHE_V3_0 (GENICAM_LOG_CONFIG_V3_0, GENICAM_CLPROTOCOL)
/// less one trailing separator; RuntimeException without either.
OV_ENGINE_API void SetGenICamCacheFolder(const gcstring& folder);
OV_ENGINE_API gcstring GetGenICamCacheFolder();
/// File with the logging configuration.
OV_ENGINE_API void SetGenICamLogConfig(const gcstring& file);
OV_ENGINE_API gcstring GetGenICamLogConfig();
/// Folder of the Camera Link protocol libraries.
OV_ENGINE_API void SetGenICamCLProtocolFolder(const gcstring& folder);
OV_ENGINE_API gcstring GetGenICamCLProtocolFolder();

/// Turns "\\" to "/" and escapes what a URL can't hold.
OV_ENGINE_API gcstring UrlEncode(const gcstring& text);
/// Takes escapes back; what is no escape stays.
OV_ENGINE_API gcstring UrlDecode(const gcstring& text);

}  // namespace GenICam_3_0_ORVANE
