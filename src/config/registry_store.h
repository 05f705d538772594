// Values of the registry as Automation values. Names are in any script; texts come and go whole,
// all other data one byte a character. Every operation but the last two gives True on failure,
// which the error state tells: 20000 with the system's text and code for what the registry refuses,
// or the run-time error of a conversion. One backslash at the beginning of a path is dropped.
#pragma once

#include "automation/variant.h"

namespace qv::config {

// By the type that is stored:
//   REG_NONE                               String, every byte
//   REG_SZ, REG_EXPAND_SZ                  String without the last character, which is its end
//   REG_LINK, REG_RESOURCE_LIST            String of bytes without the last one
//   REG_BINARY                             array of Byte; no byte at all is one 0
//   REG_DWORD, REG_DWORD_BIG_ENDIAN        Long of the first four bytes; a blank stands for the
//                                          fourth where there are three, fewer are 0
//   REG_MULTI_SZ                           array of String from 1, without elements where empty
//   any other                              Empty
// What is stored without its end loses its last character: a reader can't tell. A typed variable is
// given the value in its own type: a String takes two bytes of an array as a character.
Boolean RegistryRead(const Text& lpSubKey, const Text& lpValueName, Variant& RetVal, Long Key);
// REG_NONE stores four zero bytes whatever the value. An empty name with an empty value makes the
// key and nothing else.
Boolean RegistryWrite(const Text& lpSubKey, const Text& lpValueName, const Variant& Value, Long Key,
                      Long ValueType);

// From index 1 on; what was found before a failure stays.
Boolean RegistryListKeys(const Text& lpSubKey, Array<Text>& RetVal, Long Key);
Boolean RegistryListValues(const Text& lpSubKey, Array<Text>& RetValName, Array<Variant>& RetVal,
                           Array<Long>& RetValType, Long Key);

Boolean RegistryDeleteValue(const Text& lpSubKey, const Text& lpValueName, Long Key);
// Deletes the key of that path below the key of that path. Applications rely on nothing else being
// deleted.
Boolean RegistryDelete(const Text& lpSubKey, Long Key);
// Deletes the last key of the path. A path without a backslash fails with nothing told.
Boolean RegistryDeleteKey(const Text& lpSubKey, Long Key);

// An application's own key lies under HKEY_LOCAL_MACHINE.
Text GetRegistryAppKey(const Text& AppName);
Boolean RegistryApp_Write(const Text& AppName, const Text& Section, const Text& Value);
Boolean RegistryApp_Read(const Text& AppName, const Text& Section, Text& RetValue);
// With a backslash at its end. "" = failure, told by the error state.
Text GetApplicationPath(const Text& AppName);

}  // namespace qv::config
