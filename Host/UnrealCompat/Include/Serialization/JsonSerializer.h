#pragma once

#include "Dom/JsonObject.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonWriter.h"
#include "Policies/CondensedJsonPrintPolicy.h"

namespace UECompatJson
{
	enum class EParseRoot
	{
		Object,
		Array,
		Any
	};
	// Parses the reader's text; on failure sets the reader's error message and returns null.
	TSharedPtr<FJsonValue> Parse(TJsonReader<TCHAR>& Reader, EParseRoot Root, bool bStoreNumbersAsStrings);
	void Write(FString& Out, const FJsonValue* Value, const FString* Identifier, bool bPretty, int32 InitialIndent);
}

class FJsonSerializer
{
public:
	enum class EFlags
	{
		None = 0,
		StoreNumbersAsStrings = 1
	};

	static bool Deserialize(const TSharedRef<TJsonReader<TCHAR>>& Reader, TSharedPtr<FJsonObject>& OutObject, EFlags Options = EFlags::None)
	{
		const TSharedPtr<FJsonValue> Value = UECompatJson::Parse(*Reader, UECompatJson::EParseRoot::Object, Options == EFlags::StoreNumbersAsStrings);
		if (!Value.IsValid())
		{
			return false;
		}
		OutObject = Value->AsObject();
		return true;
	}
	static bool Deserialize(const TSharedRef<TJsonReader<TCHAR>>& Reader, TArray<TSharedPtr<FJsonValue>>& OutArray, EFlags Options = EFlags::None)
	{
		const TSharedPtr<FJsonValue> Value = UECompatJson::Parse(*Reader, UECompatJson::EParseRoot::Array, Options == EFlags::StoreNumbersAsStrings);
		if (!Value.IsValid())
		{
			return false;
		}
		OutArray = Value->AsArray();
		return true;
	}
	static bool Deserialize(const TSharedRef<TJsonReader<TCHAR>>& Reader, TSharedPtr<FJsonValue>& OutValue, EFlags Options = EFlags::None)
	{
		OutValue = UECompatJson::Parse(*Reader, UECompatJson::EParseRoot::Any, Options == EFlags::StoreNumbersAsStrings);
		return OutValue.IsValid();
	}

	template <class CharType, class PrintPolicy>
	static bool Serialize(const TSharedPtr<FJsonObject>& Object, const TSharedRef<TJsonWriter<CharType, PrintPolicy>>& Writer, bool bCloseWriter = true)
	{
		if (!Object.IsValid())
		{
			return false;
		}
		const FJsonValueObject Value(Object);
		UECompatJson::Write(Writer->GetBuffer(), &Value, nullptr, PrintPolicy::bPretty, Writer->GetInitialIndent());
		return !bCloseWriter || Writer->Close();
	}
	template <class CharType, class PrintPolicy>
	static bool Serialize(const TSharedRef<FJsonObject>& Object, const TSharedRef<TJsonWriter<CharType, PrintPolicy>>& Writer, bool bCloseWriter = true)
	{
		return Serialize(TSharedPtr<FJsonObject>(Object), Writer, bCloseWriter);
	}
	template <class CharType, class PrintPolicy>
	static bool Serialize(const TArray<TSharedPtr<FJsonValue>>& Array, const TSharedRef<TJsonWriter<CharType, PrintPolicy>>& Writer, bool bCloseWriter = true)
	{
		const FJsonValueArray Value(Array);
		UECompatJson::Write(Writer->GetBuffer(), &Value, nullptr, PrintPolicy::bPretty, Writer->GetInitialIndent());
		return !bCloseWriter || Writer->Close();
	}
	template <class CharType, class PrintPolicy>
	static bool Serialize(const TSharedPtr<FJsonValue>& Value, const FString& Identifier, const TSharedRef<TJsonWriter<CharType, PrintPolicy>>& Writer, bool bCloseWriter = true)
	{
		if (!Value.IsValid())
		{
			return false;
		}
		UECompatJson::Write(Writer->GetBuffer(), Value.Get(), Identifier.IsEmpty() ? nullptr : &Identifier, PrintPolicy::bPretty, Writer->GetInitialIndent());
		return !bCloseWriter || Writer->Close();
	}
};
ENUM_CLASS_FLAGS(FJsonSerializer::EFlags)
