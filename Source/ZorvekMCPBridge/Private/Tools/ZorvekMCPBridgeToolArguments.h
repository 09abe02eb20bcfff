#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

// How tools read their arguments. Every scalar parameter is declared as a string, so the readers
// also take the JSON forms a client may send instead (numbers and booleans for strings, numeric
// strings for integers, "true"/"false" for booleans).
namespace ZorvekMCPBridgeToolArguments
{
	// A string, or the text of a number or boolean; the default when the key is absent or holds
	// an object, array or null.
	FString ReadString(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, const FString& Default);

	// A number (rounded) or a numeric string; the default otherwise. No clamping.
	int32 ReadInteger(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, int32 Default);

	// A JSON boolean or the strings "true" / "false" (any case); the default otherwise.
	bool ReadBool(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, bool Default);
}
