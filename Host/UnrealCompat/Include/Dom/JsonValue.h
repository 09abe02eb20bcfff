#pragma once

#include "Containers/UnrealString.h"
#include "Containers/Array.h"
#include "Templates/SharedPointer.h"
#include "Serialization/JsonTypes.h"

class FJsonObject;

class FJsonValue
{
public:
	EJson Type = EJson::None;

	virtual ~FJsonValue() = default;
	FJsonValue(const FJsonValue&) = delete;
	FJsonValue& operator=(const FJsonValue&) = delete;

	double AsNumber() const;
	FString AsString() const;
	bool AsBool() const;
	const TArray<TSharedPtr<FJsonValue>>& AsArray() const;
	virtual const TSharedPtr<FJsonObject>& AsObject() const;

	virtual bool TryGetNumber(double& OutNumber) const { (void)OutNumber; return false; }
	bool TryGetNumber(float& OutNumber) const;
	bool TryGetNumber(int8& OutNumber) const;
	bool TryGetNumber(int16& OutNumber) const;
	bool TryGetNumber(int32& OutNumber) const;
	bool TryGetNumber(int64& OutNumber) const;
	bool TryGetNumber(uint8& OutNumber) const;
	bool TryGetNumber(uint16& OutNumber) const;
	bool TryGetNumber(uint32& OutNumber) const;
	bool TryGetNumber(uint64& OutNumber) const;
	virtual bool TryGetString(FString& OutString) const { (void)OutString; return false; }
	virtual bool TryGetBool(bool& OutBool) const { (void)OutBool; return false; }
	virtual bool TryGetArray(const TArray<TSharedPtr<FJsonValue>>*& OutArray) const { (void)OutArray; return false; }
	virtual bool TryGetObject(const TSharedPtr<FJsonObject>*& Object) const { (void)Object; return false; }
	virtual bool PreferStringRepresentation() const { return false; }
	bool IsNull() const { return Type == EJson::Null || Type == EJson::None; }

	static TSharedPtr<FJsonValue> Duplicate(const TSharedPtr<const FJsonValue>& Source);
	static TSharedPtr<FJsonValue> Duplicate(const TSharedPtr<FJsonValue>& Source) { return Duplicate(TSharedPtr<const FJsonValue>(Source)); }
	static bool CompareEqual(const FJsonValue& Lhs, const FJsonValue& Rhs);

protected:
	FJsonValue() = default;
	virtual FString GetType() const = 0;
	// Integer conversion shared by the TryGetNumber overloads: numbers round half away from
	// zero and must fit; numeric strings are parsed leniently, as the engine does.
	template <typename T>
	bool TryGetInteger(T& OutNumber) const;
	void ErrorMessage(const FString& InType) const;
};

class FJsonValueString : public FJsonValue
{
public:
	explicit FJsonValueString(const FString& InValue) : Value(InValue) { Type = EJson::String; }
	explicit FJsonValueString(FString&& InValue) : Value(MoveTemp(InValue)) { Type = EJson::String; }
	bool TryGetString(FString& OutString) const override { OutString = Value; return true; }
	bool TryGetNumber(double& OutNumber) const override;
	bool TryGetBool(bool& OutBool) const override { OutBool = Value.ToBool(); return true; }

protected:
	FString GetType() const override { return TEXT("String"); }
	FString Value;
};

class FJsonValueNumber : public FJsonValue
{
public:
	explicit FJsonValueNumber(double InValue) : Value(InValue) { Type = EJson::Number; }
	bool TryGetNumber(double& OutNumber) const override { OutNumber = Value; return true; }
	bool TryGetBool(bool& OutBool) const override { OutBool = Value != 0.0; return true; }
	bool TryGetString(FString& OutString) const override { OutString = FString::SanitizeFloat(Value, 0); return true; }

protected:
	FString GetType() const override { return TEXT("Number"); }
	double Value;
};

class FJsonValueNumberString : public FJsonValue
{
public:
	explicit FJsonValueNumberString(const FString& InValue) : Value(InValue) { Type = EJson::Number; }
	bool TryGetNumber(double& OutNumber) const override;
	bool TryGetString(FString& OutString) const override { OutString = Value; return true; }
	bool TryGetBool(bool& OutBool) const override { OutBool = Value.ToBool(); return true; }
	bool PreferStringRepresentation() const override { return true; }

protected:
	FString GetType() const override { return TEXT("NumberString"); }
	FString Value;
};

class FJsonValueBoolean : public FJsonValue
{
public:
	explicit FJsonValueBoolean(bool InValue) : Value(InValue) { Type = EJson::Boolean; }
	bool TryGetNumber(double& OutNumber) const override { OutNumber = Value ? 1 : 0; return true; }
	bool TryGetBool(bool& OutBool) const override { OutBool = Value; return true; }
	bool TryGetString(FString& OutString) const override { OutString = Value ? TEXT("true") : TEXT("false"); return true; }

protected:
	FString GetType() const override { return TEXT("Boolean"); }
	bool Value;
};

class FJsonValueArray : public FJsonValue
{
public:
	explicit FJsonValueArray(const TArray<TSharedPtr<FJsonValue>>& InArray) : Value(InArray) { Type = EJson::Array; }
	explicit FJsonValueArray(TArray<TSharedPtr<FJsonValue>>&& InArray) : Value(MoveTemp(InArray)) { Type = EJson::Array; }
	bool TryGetArray(const TArray<TSharedPtr<FJsonValue>>*& OutArray) const override { OutArray = &Value; return true; }

protected:
	FString GetType() const override { return TEXT("Array"); }
	TArray<TSharedPtr<FJsonValue>> Value;
};

class FJsonValueObject : public FJsonValue
{
public:
	explicit FJsonValueObject(TSharedPtr<FJsonObject> InObject) : Value(MoveTemp(InObject)) { Type = EJson::Object; }
	bool TryGetObject(const TSharedPtr<FJsonObject>*& OutObject) const override { OutObject = &Value; return true; }
	const TSharedPtr<FJsonObject>& AsObject() const override { return Value; }

protected:
	FString GetType() const override { return TEXT("Object"); }
	TSharedPtr<FJsonObject> Value;
};

class FJsonValueNull : public FJsonValue
{
public:
	FJsonValueNull() { Type = EJson::Null; }

protected:
	FString GetType() const override { return TEXT("Null"); }
};
