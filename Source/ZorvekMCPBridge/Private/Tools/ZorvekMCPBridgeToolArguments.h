#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

// How tools read their arguments. Every scalar parameter is declared as a string, so the readers
// also take the JSON forms a client may send instead (numbers and booleans for strings, numeric
// strings for integers, "true"/"false" for booleans).
//
// Keys are looked up as the engine's JSON object stores them: without regard to case. "Type" and
// "type" are one key, so a lower-case legacy key is a fallback of its PascalCase twin only where
// the two differ in more than case ("name_or_path" for "AssetNameOrPath"); when a message carries
// both spellings of one key, the later one is the only one left.
namespace ZorvekMCPBridgeToolArguments
{
	// A string, or the text of a number or boolean; the default when the key is absent or holds
	// an object, array or null.
	FString ReadString(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, const FString& Default);

	// A JSON number or decimal text ("12", " -3 ", "2.6"). Fractions round half away from zero,
	// as the engine's integer TryGetNumber does, so 2.6 and "2.6" both read 3 (the engine itself
	// would truncate the text to 2). Values beyond the int32 range clamp to its ends rather than
	// wrap or fall back. The default for anything else: absent, boolean, null, object, array,
	// empty or non-numeric text, exponents in text.
	int32 ReadInteger(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, int32 Default);

	// A limit-style integer: ReadInteger raised to at least 1, with no upper clamp beyond int32.
	int32 ReadLimit(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, int32 Default);

	// A JSON boolean or the strings "true" / "false" (any case); the default otherwise.
	bool ReadBool(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, bool Default);
}
