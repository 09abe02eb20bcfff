#include "Tools/ZorvekMCPBridgeToolArguments.h"

#include "Dom/JsonValue.h"

FString ZorvekMCPBridgeToolArguments::ReadString(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, const FString& Default)
{
	const TSharedPtr<FJsonValue> Value = Arguments.IsValid() ? Arguments->TryGetField(Key) : nullptr;
	if (!Value.IsValid() || (Value->Type != EJson::String && Value->Type != EJson::Number && Value->Type != EJson::Boolean))
	{
		return Default;
	}
	FString Text;
	return Value->TryGetString(Text) ? Text : Default;
}

int32 ZorvekMCPBridgeToolArguments::ReadInteger(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, int32 Default)
{
	const TSharedPtr<FJsonValue> Value = Arguments.IsValid() ? Arguments->TryGetField(Key) : nullptr;
	if (!Value.IsValid() || (Value->Type != EJson::String && Value->Type != EJson::Number))
	{
		return Default;
	}
	if (Value->Type == EJson::String)
	{
		const FString Text = Value->AsString().TrimStartAndEnd();
		if (Text.IsEmpty() || !Text.IsNumeric())
		{
			return Default;
		}
	}
	int32 Number = Default;
	return Value->TryGetNumber(Number) ? Number : Default;
}

bool ZorvekMCPBridgeToolArguments::ReadBool(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, bool Default)
{
	const TSharedPtr<FJsonValue> Value = Arguments.IsValid() ? Arguments->TryGetField(Key) : nullptr;
	if (!Value.IsValid())
	{
		return Default;
	}
	if (Value->Type == EJson::Boolean)
	{
		return Value->AsBool();
	}
	if (Value->Type == EJson::String)
	{
		const FString Text = Value->AsString().TrimStartAndEnd();
		if (Text.Equals(TEXT("true"), ESearchCase::IgnoreCase))
		{
			return true;
		}
		if (Text.Equals(TEXT("false"), ESearchCase::IgnoreCase))
		{
			return false;
		}
	}
	return Default;
}
