#pragma once

#include "Containers/UnrealString.h"

// Converts TCHAR text to UTF-8 bytes (without the terminator in Length()).
class FTCHARToUTF8
{
public:
	explicit FTCHARToUTF8(const TCHAR* Source);
	FTCHARToUTF8(const TCHAR* Source, int32 SourceLength);
	const ANSICHAR* Get() const { return Converted.c_str(); }
	int32 Length() const { return (int32)Converted.size(); }

private:
	std::string Converted;
};

// Converts UTF-8 bytes to TCHAR text; malformed sequences become '?', as in the engine.
class FUTF8ToTCHAR
{
public:
	explicit FUTF8ToTCHAR(const ANSICHAR* Source);
	FUTF8ToTCHAR(const ANSICHAR* Source, int32 SourceLength);
	const TCHAR* Get() const { return *Converted; }
	int32 Length() const { return Converted.Len(); }

private:
	FString Converted;
};

#define TCHAR_TO_UTF8(Text) (FTCHARToUTF8((const TCHAR*)(Text)).Get())
#define UTF8_TO_TCHAR(Text) (FUTF8ToTCHAR((const ANSICHAR*)(Text)).Get())
