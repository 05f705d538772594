// Settings in INI files, by the platform's profile services. Nothing is kept between calls. Texts
// go through the ANSI code page, in which the files are; names of files don't. What the services
// answer is not looked at but for the text they give. A record that is Nothing is run-time
// error 91.
#pragma once

#include "automation/variant.h"
#include "interfaces.h"

namespace qv::config {

// Skips every step that fails. Makes Ini.ExePath the current folder, and its drive the current one,
// unless STUPF_NOCHANGEPATH is in Flags; a folder that is not there leaves both as they were.
void Start_Up(const Object<_QVtIniStruct>& Ini, const Text& IniFile, Long Flags);

// A String always. Null or "" for Sect asks for the names of all sections, for Par for those of all
// keys, each ended by a character 0. Empty = failure, told by the error state.
Variant Ini_Get(const Variant& Sect, const Variant& Par, const Variant& DefVal,
                const Object<_QVtIniStruct>& Ini);
// A Boolean is stored as "True" or "False".
void Ini_Put(const Text& Sect, const Text& Par, const Variant& NewVal,
             const Object<_QVtIniStruct>& Ini);
// The lines "key=value" from index 1 on.
void Ini_GetSect(const Text& Sect, Array<Text>& RetVal, const Object<_QVtIniStruct>& Ini);
// True = failure, told by the error state.
Boolean Ini_PutSect(const Text& Sect, const Array<Text>& Values, const Object<_QVtIniStruct>& Ini);
void Ini_DeleteSection(const Text& Sect, const Object<_QVtIniStruct>& Ini);
void Ini_DeletePar(const Text& Sect, const Text& Par, const Object<_QVtIniStruct>& Ini);

}  // namespace qv::config
