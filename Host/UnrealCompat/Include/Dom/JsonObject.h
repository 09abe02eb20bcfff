// FJsonObject: keys compare case-insensitively and keep insertion order (see TMap).
#pragma once

#include "Containers/Map.h"
#include "Dom/JsonValue.h"

class FJsonObject
{
public:
	TMap<FString, TSharedPtr<FJsonValue>> Values;

	template <EJson JsonType>
	TSharedPtr<FJsonValue> GetField(FStringView FieldName) const { return GetField(FieldName, JsonType); }
	TSharedPtr<FJsonValue> GetField(FStringView FieldName, EJson JsonType) const;
	TSharedPtr<FJsonValue> TryGetField(FStringView FieldName) const;
	bool HasField(FStringView FieldName) const;
	template <EJson JsonType>
	bool HasTypedField(FStringView FieldName) const { return HasTypedField(FieldName, JsonType); }
	bool HasTypedField(FStringView FieldName, EJson JsonType) const;

	void SetField(const FString& FieldName, const TSharedPtr<FJsonValue>& Value);
	void RemoveField(FStringView FieldName);

	double GetNumberField(FStringView FieldName) const;
	int32 GetIntegerField(FStringView FieldName) const;
	bool TryGetNumberField(FStringView FieldName, double& OutNumber) const;
	bool TryGetNumberField(FStringView FieldName, float& OutNumber) const;
	bool TryGetNumberField(FStringView FieldName, int32& OutNumber) const;
	bool TryGetNumberField(FStringView FieldName, uint32& OutNumber) const;
	bool TryGetNumberField(FStringView FieldName, int64& OutNumber) const;
	bool TryGetNumberField(FStringView FieldName, uint64& OutNumber) const;
	void SetNumberField(const FString& FieldName, double Number);

	FString GetStringField(FStringView FieldName) const;
	bool TryGetStringField(FStringView FieldName, FString& OutString) const;
	bool TryGetStringArrayField(FStringView FieldName, TArray<FString>& OutArray) const;
	void SetStringField(const FString& FieldName, const FString& StringValue);

	bool GetBoolField(FStringView FieldName) const;
	bool TryGetBoolField(FStringView FieldName, bool& OutBool) const;
	void SetBoolField(const FString& FieldName, bool InValue);

	const TArray<TSharedPtr<FJsonValue>>& GetArrayField(FStringView FieldName) const;
	bool TryGetArrayField(FStringView FieldName, const TArray<TSharedPtr<FJsonValue>>*& OutArray) const;
	void SetArrayField(const FString& FieldName, const TArray<TSharedPtr<FJsonValue>>& Array);

	const TSharedPtr<FJsonObject>& GetObjectField(FStringView FieldName) const;
	bool TryGetObjectField(FStringView FieldName, const TSharedPtr<FJsonObject>*& OutObject) const;
	void SetObjectField(const FString& FieldName, const TSharedPtr<FJsonObject>& JsonObject);

	static void Duplicate(const TSharedPtr<const FJsonObject>& Source, const TSharedPtr<FJsonObject>& Dest);
	static void Duplicate(const TSharedPtr<FJsonObject>& Source, TSharedPtr<FJsonObject>& Dest);
};
