// Engine configuration: ini files keyed by file name, with [Section] Key=Value lines.
#pragma once

#include "Containers/Map.h"
#include "CoreGlobals.h"
#include <mutex>

class FConfigCacheIni
{
public:
	bool GetBool(const TCHAR* Section, const TCHAR* Key, bool& Value, const FString& Filename);
	bool GetInt(const TCHAR* Section, const TCHAR* Key, int32& Value, const FString& Filename);
	bool GetString(const TCHAR* Section, const TCHAR* Key, FString& Value, const FString& Filename);
	int32 GetArray(const TCHAR* Section, const TCHAR* Key, TArray<FString>& Value, const FString& Filename);
	void SetBool(const TCHAR* Section, const TCHAR* Key, bool Value, const FString& Filename);
	void SetString(const TCHAR* Section, const TCHAR* Key, const TCHAR* Value, const FString& Filename);

	// Host: replaces the content of one configuration with the text of an ini file, or empties it.
	UE_COMPAT_HOST_ONLY bool LoadFromText(const FString& Filename, const FString& IniText);
	UE_COMPAT_HOST_ONLY void Clear(const FString& Filename);

private:
	std::recursive_mutex Mutex;
	// File -> section -> key -> values (a key may repeat with '+').
	TMap<FString, TMap<FString, TMap<FString, TArray<FString>>>> Files;
};
