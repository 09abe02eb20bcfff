#pragma once

#include "CoreMinimal.h"
#include "Delegates/Delegate.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Internationalization/Text.h"
#include "UObject/Class.h"
#include "UObject/UnrealType.h"

enum class EJsonObjectConversionFlags
{
	None = 0,
	SkipStandardizeCase = 1 << 0,
	WriteTextAsComplexString = 1 << 1,
	SuppressClassNameForPersistentObject = 1 << 2,
};

struct FJsonObjectConverter
{
	using CustomExportCallback = TDelegate<TSharedPtr<FJsonValue>(FProperty* Property, const void* Value)>;
	using CustomImportCallback = TDelegate<bool(const TSharedPtr<FJsonValue>& JsonValue, FProperty* Property, void* Value)>;

	static FString StandardizeCase(const FString& StringIn);

	static TSharedPtr<FJsonValue> UPropertyToJsonValue(FProperty* Property, const void* Value, int64 CheckFlags = 0,
		int64 SkipFlags = 0, const CustomExportCallback* ExportCb = nullptr,
		FProperty* OuterProperty = nullptr,
		EJsonObjectConversionFlags ConversionFlags = EJsonObjectConversionFlags::None);

	static bool JsonObjectToUStruct(const TSharedRef<FJsonObject>& JsonObject, const UStruct* StructDefinition, void* OutStruct,
		int64 CheckFlags = 0, int64 SkipFlags = 0, const bool bStrictMode = false,
		FText* OutFailReason = nullptr, const CustomImportCallback* ImportCb = nullptr);
	static bool JsonValueToUProperty(const TSharedPtr<FJsonValue>& JsonValue, FProperty* Property, void* OutValue,
		int64 CheckFlags = 0, int64 SkipFlags = 0, const bool bStrictMode = false,
		FText* OutFailReason = nullptr, const CustomImportCallback* ImportCb = nullptr);
};
