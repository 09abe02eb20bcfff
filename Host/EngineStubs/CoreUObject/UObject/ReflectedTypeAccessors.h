#pragma once

class UEnum;
class UScriptStruct;
class UClass;

template <typename T>
UEnum* StaticEnum();
template <typename T>
UScriptStruct* StaticStruct();
template <typename T>
UClass* StaticClass();
