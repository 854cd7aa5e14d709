#pragma once
/// Environment, folders and file names.

#include "Base/GCString.h"
#include "Base/GCStringVector.h"

namespace GenICam_3_0_ORVANE {

bool DoesEnvironmentVariableExist(const gcstring& name);
/// False, with `value` left alone, when the variable isn't set.
bool GetValueOfEnvironmentVariable(const gcstring& name, gcstring& value);
/// RuntimeException when the variable isn't set.
gcstring GetValueOfEnvironmentVariable(const gcstring& name);

/// Puts values in the place of all "$(NAME)". RuntimeException for a variable
/// that isn't set.
/// @param replaceBlanks  also turns each blank into "%20"
void ReplaceEnvironmentVariables(gcstring& text, bool replaceBlanks = false);

/// The real path of the file that holds a function; empty on any failure.
gcstring GetModulePathFromFunction(void* function);

/// The names, without folders, of the files that match a pattern, in which
/// "$(NAME)" stands for a variable. RuntimeException when reading fails.
void GetFiles(const gcstring& pattern, gcstring_vector& files, bool onlyDirectories = false);

/// The pieces between runs of delimiters.
void Tokenize(const gcstring& text, gcstring_vector& tokens, const gcstring& delimiters = " ");

/// Folder of the node-map cache. The getters give what was set, else the
/// variable GENICAM_CACHE_V3_0 (GENICAM_LOG_CONFIG_V3_0, GENICAM_CLPROTOCOL)
/// less one trailing separator; RuntimeException without either.
void SetGenICamCacheFolder(const gcstring& folder);
gcstring GetGenICamCacheFolder();
/// File with the logging configuration.
void SetGenICamLogConfig(const gcstring& file);
gcstring GetGenICamLogConfig();
/// Folder of the Camera Link protocol libraries.
void SetGenICamCLProtocolFolder(const gcstring& folder);
gcstring GetGenICamCLProtocolFolder();

/// Turns "\\" to "/" and escapes what a URL can't hold.
gcstring UrlEncode(const gcstring& text);
/// Takes escapes back; what is no escape stays.
gcstring UrlDecode(const gcstring& text);

}  // namespace GenICam_3_0_ORVANE
