#include "Dom/JsonObject.h"
#include "Serialization/JsonSerializer.h"
#include "Logging/LogMacros.h"

#include <cmath>
#include <cstdio>
#include <limits>

// ---------------------------------------------------------------------------------------------
// Values

void FJsonValue::ErrorMessage(const FString& InType) const
{
	UE_LOG(LogJson, Error, TEXT("Json Value of type '%s' used as a '%s'."), *GetType(), *InType);
}

double FJsonValue::AsNumber() const
{
	double Number = 0.0;
	if (!TryGetNumber(Number))
	{
		ErrorMessage(TEXT("Number"));
	}
	return Number;
}

FString FJsonValue::AsString() const
{
	FString String;
	if (!TryGetString(String))
	{
		ErrorMessage(TEXT("String"));
	}
	return String;
}

bool FJsonValue::AsBool() const
{
	bool Bool = false;
	if (!TryGetBool(Bool))
	{
		ErrorMessage(TEXT("Boolean"));
	}
	return Bool;
}

const TArray<TSharedPtr<FJsonValue>>& FJsonValue::AsArray() const
{
	const TArray<TSharedPtr<FJsonValue>>* Array = nullptr;
	if (!TryGetArray(Array))
	{
		static const TArray<TSharedPtr<FJsonValue>> EmptyArray;
		ErrorMessage(TEXT("Array"));
		return EmptyArray;
	}
	return *Array;
}

const TSharedPtr<FJsonObject>& FJsonValue::AsObject() const
{
	// The engine answers a value that is no object with its shared empty object, a valid
	// pointer, after logging the error.
	static const TSharedPtr<FJsonObject> EmptyObject = MakeShared<FJsonObject>();
	ErrorMessage(TEXT("Object"));
	return EmptyObject;
}

template <typename T>
bool FJsonValue::TryGetInteger(T& OutNumber) const
{
	if (Type == EJson::String)
	{
		FString Text;
		TryGetString(Text);
		if constexpr (std::is_signed_v<T>)
		{
			int64 Parsed = 0;
			LexFromString(Parsed, *Text);
			OutNumber = (T)Parsed;
		}
		else
		{
			uint64 Parsed = 0;
			LexFromString(Parsed, *Text);
			OutNumber = (T)Parsed;
		}
		return true;
	}
	double Number = 0.0;
	if (!TryGetNumber(Number))
	{
		return false;
	}
	const double Rounded = std::round(Number);
	if (!std::isfinite(Rounded) || Rounded < (double)std::numeric_limits<T>::lowest() || Rounded > (double)std::numeric_limits<T>::max())
	{
		return false;
	}
	OutNumber = (T)Rounded;
	return true;
}

bool FJsonValue::TryGetNumber(float& OutNumber) const
{
	double Number = 0.0;
	if (!TryGetNumber(Number))
	{
		return false;
	}
	OutNumber = (float)Number;
	return true;
}
bool FJsonValue::TryGetNumber(int8& OutNumber) const { return TryGetInteger(OutNumber); }
bool FJsonValue::TryGetNumber(int16& OutNumber) const { return TryGetInteger(OutNumber); }
bool FJsonValue::TryGetNumber(int32& OutNumber) const { return TryGetInteger(OutNumber); }
bool FJsonValue::TryGetNumber(int64& OutNumber) const { return TryGetInteger(OutNumber); }
bool FJsonValue::TryGetNumber(uint8& OutNumber) const { return TryGetInteger(OutNumber); }
bool FJsonValue::TryGetNumber(uint16& OutNumber) const { return TryGetInteger(OutNumber); }
bool FJsonValue::TryGetNumber(uint32& OutNumber) const { return TryGetInteger(OutNumber); }
bool FJsonValue::TryGetNumber(uint64& OutNumber) const { return TryGetInteger(OutNumber); }

bool FJsonValueString::TryGetNumber(double& OutNumber) const
{
	if (!Value.IsNumeric())
	{
		return false;
	}
	LexFromString(OutNumber, *Value);
	return true;
}

bool FJsonValueNumberString::TryGetNumber(double& OutNumber) const
{
	LexFromString(OutNumber, *Value);
	return true;
}

TSharedPtr<FJsonValue> FJsonValue::Duplicate(const TSharedPtr<const FJsonValue>& Source)
{
	if (!Source.IsValid())
	{
		return nullptr;
	}
	switch (Source->Type)
	{
	case EJson::String:
		return MakeShared<FJsonValueString>(Source->AsString());
	case EJson::Number:
		if (Source->PreferStringRepresentation())
		{
			return MakeShared<FJsonValueNumberString>(Source->AsString());
		}
		return MakeShared<FJsonValueNumber>(Source->AsNumber());
	case EJson::Boolean:
		return MakeShared<FJsonValueBoolean>(Source->AsBool());
	case EJson::Array:
	{
		TArray<TSharedPtr<FJsonValue>> Items;
		for (const TSharedPtr<FJsonValue>& Item : Source->AsArray())
		{
			Items.Add(Duplicate(Item));
		}
		return MakeShared<FJsonValueArray>(MoveTemp(Items));
	}
	case EJson::Object:
	{
		TSharedPtr<FJsonObject> Copy = MakeShared<FJsonObject>();
		FJsonObject::Duplicate(Source->AsObject(), Copy);
		return MakeShared<FJsonValueObject>(Copy);
	}
	default:
		return MakeShared<FJsonValueNull>();
	}
}

bool FJsonValue::CompareEqual(const FJsonValue& Lhs, const FJsonValue& Rhs)
{
	if (Lhs.Type != Rhs.Type)
	{
		return false;
	}
	switch (Lhs.Type)
	{
	case EJson::None:
	case EJson::Null:
		return true;
	case EJson::String:
		return Lhs.AsString().Equals(Rhs.AsString());
	case EJson::Number:
		return Lhs.AsNumber() == Rhs.AsNumber();
	case EJson::Boolean:
		return Lhs.AsBool() == Rhs.AsBool();
	case EJson::Array:
	{
		const TArray<TSharedPtr<FJsonValue>>& A = Lhs.AsArray();
		const TArray<TSharedPtr<FJsonValue>>& B = Rhs.AsArray();
		if (A.Num() != B.Num())
		{
			return false;
		}
		for (int32 Index = 0; Index < A.Num(); ++Index)
		{
			if (!CompareEqual(*A[Index], *B[Index]))
			{
				return false;
			}
		}
		return true;
	}
	case EJson::Object:
	{
		const TSharedPtr<FJsonObject>& A = Lhs.AsObject();
		const TSharedPtr<FJsonObject>& B = Rhs.AsObject();
		if (!A.IsValid() || !B.IsValid())
		{
			return A.IsValid() == B.IsValid();
		}
		if (A->Values.Num() != B->Values.Num())
		{
			return false;
		}
		for (const auto& Pair : A->Values)
		{
			const TSharedPtr<FJsonValue>* Other = B->Values.Find(Pair.Key);
			if (!Other || !CompareEqual(*Pair.Value, **Other))
			{
				return false;
			}
		}
		return true;
	}
	}
	return false;
}

// ---------------------------------------------------------------------------------------------
// Objects

TSharedPtr<FJsonValue> FJsonObject::TryGetField(FStringView FieldName) const
{
	const TSharedPtr<FJsonValue>* Field = Values.Find(FString(FieldName));
	return Field ? *Field : TSharedPtr<FJsonValue>();
}

TSharedPtr<FJsonValue> FJsonObject::GetField(FStringView FieldName, EJson JsonType) const
{
	const TSharedPtr<FJsonValue> Field = TryGetField(FieldName);
	if (Field.IsValid() && (JsonType == EJson::None || Field->Type == JsonType))
	{
		return Field;
	}
	UE_LOG(LogJson, Warning, TEXT("Field %s was not found or was of the wrong type."), *FString(FieldName));
	return MakeShared<FJsonValueNull>();
}

bool FJsonObject::HasField(FStringView FieldName) const
{
	return Values.Contains(FString(FieldName));
}

bool FJsonObject::HasTypedField(FStringView FieldName, EJson JsonType) const
{
	const TSharedPtr<FJsonValue> Field = TryGetField(FieldName);
	return Field.IsValid() && Field->Type == JsonType;
}

void FJsonObject::SetField(const FString& FieldName, const TSharedPtr<FJsonValue>& Value)
{
	Values.Add(FieldName, Value);
}

void FJsonObject::RemoveField(FStringView FieldName)
{
	Values.Remove(FString(FieldName));
}

double FJsonObject::GetNumberField(FStringView FieldName) const
{
	return GetField(FieldName, EJson::None)->AsNumber();
}

int32 FJsonObject::GetIntegerField(FStringView FieldName) const
{
	return (int32)GetNumberField(FieldName);
}

namespace
{
	template <typename T>
	bool TryGetNumberFieldImpl(const FJsonObject& Object, FStringView FieldName, T& OutNumber)
	{
		const TSharedPtr<FJsonValue> Field = Object.TryGetField(FieldName);
		return Field.IsValid() && Field->TryGetNumber(OutNumber);
	}
}

bool FJsonObject::TryGetNumberField(FStringView FieldName, double& OutNumber) const { return TryGetNumberFieldImpl(*this, FieldName, OutNumber); }
bool FJsonObject::TryGetNumberField(FStringView FieldName, float& OutNumber) const { return TryGetNumberFieldImpl(*this, FieldName, OutNumber); }
bool FJsonObject::TryGetNumberField(FStringView FieldName, int32& OutNumber) const { return TryGetNumberFieldImpl(*this, FieldName, OutNumber); }
bool FJsonObject::TryGetNumberField(FStringView FieldName, uint32& OutNumber) const { return TryGetNumberFieldImpl(*this, FieldName, OutNumber); }
bool FJsonObject::TryGetNumberField(FStringView FieldName, int64& OutNumber) const { return TryGetNumberFieldImpl(*this, FieldName, OutNumber); }
bool FJsonObject::TryGetNumberField(FStringView FieldName, uint64& OutNumber) const { return TryGetNumberFieldImpl(*this, FieldName, OutNumber); }

void FJsonObject::SetNumberField(const FString& FieldName, double Number)
{
	Values.Add(FieldName, MakeShared<FJsonValueNumber>(Number));
}

FString FJsonObject::GetStringField(FStringView FieldName) const
{
	return GetField(FieldName, EJson::None)->AsString();
}

bool FJsonObject::TryGetStringField(FStringView FieldName, FString& OutString) const
{
	const TSharedPtr<FJsonValue> Field = TryGetField(FieldName);
	return Field.IsValid() && Field->TryGetString(OutString);
}

bool FJsonObject::TryGetStringArrayField(FStringView FieldName, TArray<FString>& OutArray) const
{
	const TSharedPtr<FJsonValue> Field = TryGetField(FieldName);
	const TArray<TSharedPtr<FJsonValue>>* Array = nullptr;
	if (!Field.IsValid() || !Field->TryGetArray(Array))
	{
		return false;
	}
	TArray<FString> Strings;
	for (const TSharedPtr<FJsonValue>& Item : *Array)
	{
		FString Text;
		if (!Item.IsValid() || !Item->TryGetString(Text))
		{
			return false;
		}
		Strings.Add(Text);
	}
	OutArray = MoveTemp(Strings);
	return true;
}

void FJsonObject::SetStringField(const FString& FieldName, const FString& StringValue)
{
	Values.Add(FieldName, MakeShared<FJsonValueString>(StringValue));
}

bool FJsonObject::GetBoolField(FStringView FieldName) const
{
	return GetField(FieldName, EJson::None)->AsBool();
}

bool FJsonObject::TryGetBoolField(FStringView FieldName, bool& OutBool) const
{
	const TSharedPtr<FJsonValue> Field = TryGetField(FieldName);
	return Field.IsValid() && Field->TryGetBool(OutBool);
}

void FJsonObject::SetBoolField(const FString& FieldName, bool InValue)
{
	Values.Add(FieldName, MakeShared<FJsonValueBoolean>(InValue));
}

const TArray<TSharedPtr<FJsonValue>>& FJsonObject::GetArrayField(FStringView FieldName) const
{
	const TSharedPtr<FJsonValue>* Field = Values.Find(FString(FieldName));
	const TArray<TSharedPtr<FJsonValue>>* Array = nullptr;
	if (Field && Field->IsValid() && (*Field)->TryGetArray(Array))
	{
		return *Array;
	}
	static const TArray<TSharedPtr<FJsonValue>> EmptyArray;
	UE_LOG(LogJson, Error, TEXT("Field %s was not found or was not an array."), *FString(FieldName));
	return EmptyArray;
}

bool FJsonObject::TryGetArrayField(FStringView FieldName, const TArray<TSharedPtr<FJsonValue>>*& OutArray) const
{
	const TSharedPtr<FJsonValue>* Field = Values.Find(FString(FieldName));
	return Field && Field->IsValid() && (*Field)->TryGetArray(OutArray);
}

void FJsonObject::SetArrayField(const FString& FieldName, const TArray<TSharedPtr<FJsonValue>>& Array)
{
	Values.Add(FieldName, MakeShared<FJsonValueArray>(Array));
}

const TSharedPtr<FJsonObject>& FJsonObject::GetObjectField(FStringView FieldName) const
{
	// As the engine: a missing or non-object field gives the shared empty object, not null.
	return GetField(FieldName, EJson::Object)->AsObject();
}

bool FJsonObject::TryGetObjectField(FStringView FieldName, const TSharedPtr<FJsonObject>*& OutObject) const
{
	const TSharedPtr<FJsonValue>* Field = Values.Find(FString(FieldName));
	return Field && Field->IsValid() && (*Field)->TryGetObject(OutObject);
}

void FJsonObject::SetObjectField(const FString& FieldName, const TSharedPtr<FJsonObject>& JsonObject)
{
	if (JsonObject.IsValid())
	{
		Values.Add(FieldName, MakeShared<FJsonValueObject>(JsonObject));
	}
	else
	{
		Values.Add(FieldName, MakeShared<FJsonValueNull>());
	}
}

void FJsonObject::Duplicate(const TSharedPtr<const FJsonObject>& Source, const TSharedPtr<FJsonObject>& Dest)
{
	if (!Source.IsValid() || !Dest.IsValid())
	{
		return;
	}
	for (const auto& Pair : Source->Values)
	{
		Dest->SetField(Pair.Key, FJsonValue::Duplicate(Pair.Value));
	}
}

void FJsonObject::Duplicate(const TSharedPtr<FJsonObject>& Source, TSharedPtr<FJsonObject>& Dest)
{
	Duplicate(TSharedPtr<const FJsonObject>(Source), TSharedPtr<FJsonObject>(Dest));
}

// ---------------------------------------------------------------------------------------------
// Reader

namespace
{
	// Deeper nesting than this is refused as malformed, so a hostile body cannot exhaust the
	// stack of the reader, the writer or the destructors of the values.
	constexpr int32 MaxNestingDepth = 512;

	class FJsonParser
	{
	public:
		FJsonParser(const FString& InText, bool bInNumbersAsStrings) : Text(InText.GetStorage()), bNumbersAsStrings(bInNumbersAsStrings) {}

		TSharedPtr<FJsonValue> ParseRoot(UECompatJson::EParseRoot Root)
		{
			SkipWhitespace();
			if (Position >= Text.size() || (Text[Position] != u'{' && Text[Position] != u'['))
			{
				return Fail(TEXT("Open Curly or Square Brace token expected, but not found."));
			}
			if (Root == UECompatJson::EParseRoot::Object && Text[Position] != u'{')
			{
				return Fail(TEXT("Expected an object."));
			}
			if (Root == UECompatJson::EParseRoot::Array && Text[Position] != u'[')
			{
				return Fail(TEXT("Expected an array."));
			}
			TSharedPtr<FJsonValue> Value = ParseValue(0);
			if (!Value.IsValid())
			{
				return nullptr;
			}
			SkipWhitespace();
			if (Position < Text.size())
			{
				return Fail(TEXT("Unexpected additional input found."));
			}
			return Value;
		}

		FString Error;

	private:
		TSharedPtr<FJsonValue> Fail(const TCHAR* Message)
		{
			if (Error.IsEmpty())
			{
				uint32 Line = 1;
				uint32 Column = 0;
				for (size_t Index = 0; Index < Position && Index < Text.size(); ++Index)
				{
					if (Text[Index] == u'\n')
					{
						++Line;
						Column = 0;
					}
					else
					{
						++Column;
					}
				}
				Error = FString::Printf(TEXT("%s Line: %u Ch: %u"), Message, Line, Column);
			}
			return nullptr;
		}

		void SkipWhitespace()
		{
			while (Position < Text.size() && (Text[Position] == u' ' || Text[Position] == u'\t' || Text[Position] == u'\n' || Text[Position] == u'\r'))
			{
				++Position;
			}
		}

		bool MatchLiteral(const char* Literal)
		{
			size_t Index = 0;
			for (; Literal[Index]; ++Index)
			{
				if (Position + Index >= Text.size() || FChar::ToLower(Text[Position + Index]) != (TCHAR)Literal[Index])
				{
					return false;
				}
			}
			Position += Index;
			return true;
		}

		TSharedPtr<FJsonValue> ParseValue(int32 Depth)
		{
			if (Depth > MaxNestingDepth)
			{
				return Fail(TEXT("Nesting too deep."));
			}
			SkipWhitespace();
			if (Position >= Text.size())
			{
				return Fail(TEXT("Unexpected end of input."));
			}
			const TCHAR Lead = Text[Position];
			if (Lead == u'{')
			{
				return ParseObject(Depth);
			}
			if (Lead == u'[')
			{
				return ParseArray(Depth);
			}
			if (Lead == u'"')
			{
				FString String;
				if (!ParseString(String))
				{
					return nullptr;
				}
				return MakeShared<FJsonValueString>(MoveTemp(String));
			}
			if (Lead == u'-' || FChar::IsDigit(Lead))
			{
				return ParseNumber();
			}
			if (MatchLiteral("true"))
			{
				return MakeShared<FJsonValueBoolean>(true);
			}
			if (MatchLiteral("false"))
			{
				return MakeShared<FJsonValueBoolean>(false);
			}
			if (MatchLiteral("null"))
			{
				return MakeShared<FJsonValueNull>();
			}
			return Fail(TEXT("Unexpected character."));
		}

		TSharedPtr<FJsonValue> ParseObject(int32 Depth)
		{
			++Position;
			TSharedPtr<FJsonObject> Object = MakeShared<FJsonObject>();
			SkipWhitespace();
			if (Position < Text.size() && Text[Position] == u'}')
			{
				++Position;
				return MakeShared<FJsonValueObject>(Object);
			}
			while (true)
			{
				SkipWhitespace();
				if (Position >= Text.size() || Text[Position] != u'"')
				{
					return Fail(TEXT("Expected a field name."));
				}
				FString Key;
				if (!ParseString(Key))
				{
					return nullptr;
				}
				SkipWhitespace();
				if (Position >= Text.size() || Text[Position] != u':')
				{
					return Fail(TEXT("Expected ':' after a field name."));
				}
				++Position;
				TSharedPtr<FJsonValue> Value = ParseValue(Depth + 1);
				if (!Value.IsValid())
				{
					return nullptr;
				}
				Object->SetField(Key, Value);
				SkipWhitespace();
				if (Position < Text.size() && Text[Position] == u',')
				{
					++Position;
					continue;
				}
				if (Position < Text.size() && Text[Position] == u'}')
				{
					++Position;
					return MakeShared<FJsonValueObject>(Object);
				}
				return Fail(TEXT("Expected ',' or '}'."));
			}
		}

		TSharedPtr<FJsonValue> ParseArray(int32 Depth)
		{
			++Position;
			TArray<TSharedPtr<FJsonValue>> Items;
			SkipWhitespace();
			if (Position < Text.size() && Text[Position] == u']')
			{
				++Position;
				return MakeShared<FJsonValueArray>(MoveTemp(Items));
			}
			while (true)
			{
				TSharedPtr<FJsonValue> Value = ParseValue(Depth + 1);
				if (!Value.IsValid())
				{
					return nullptr;
				}
				Items.Add(Value);
				SkipWhitespace();
				if (Position < Text.size() && Text[Position] == u',')
				{
					++Position;
					continue;
				}
				if (Position < Text.size() && Text[Position] == u']')
				{
					++Position;
					return MakeShared<FJsonValueArray>(MoveTemp(Items));
				}
				return Fail(TEXT("Expected ',' or ']'."));
			}
		}

		static int32 HexDigit(TCHAR Character)
		{
			if (Character >= u'0' && Character <= u'9') return Character - u'0';
			if (Character >= u'a' && Character <= u'f') return Character - u'a' + 10;
			if (Character >= u'A' && Character <= u'F') return Character - u'A' + 10;
			return -1;
		}

		bool ParseHex4(uint32& OutValue)
		{
			if (Position + 4 > Text.size())
			{
				return false;
			}
			OutValue = 0;
			for (int32 Index = 0; Index < 4; ++Index)
			{
				const int32 Digit = HexDigit(Text[Position + (size_t)Index]);
				if (Digit < 0)
				{
					return false;
				}
				OutValue = OutValue * 16 + (uint32)Digit;
			}
			Position += 4;
			return true;
		}

		bool ParseString(FString& OutString)
		{
			++Position;
			std::u16string Out;
			while (Position < Text.size())
			{
				const TCHAR Character = Text[Position++];
				if (Character == u'"')
				{
					OutString = FString(MoveTemp(Out));
					return true;
				}
				if (Character != u'\\')
				{
					// Raw control characters are tolerated, as by the engine's reader.
					Out += Character;
					continue;
				}
				if (Position >= Text.size())
				{
					break;
				}
				const TCHAR Escape = Text[Position++];
				switch (Escape)
				{
				case u'"': Out += u'"'; break;
				case u'\\': Out += u'\\'; break;
				case u'/': Out += u'/'; break;
				case u'b': Out += u'\b'; break;
				case u'f': Out += u'\f'; break;
				case u'n': Out += u'\n'; break;
				case u'r': Out += u'\r'; break;
				case u't': Out += u'\t'; break;
				case u'u':
				{
					uint32 Unit = 0;
					if (!ParseHex4(Unit))
					{
						Fail(TEXT("Invalid \\u escape."));
						return false;
					}
					Out += (TCHAR)Unit;
					break;
				}
				default:
					Fail(TEXT("Bad escape sequence."));
					return false;
				}
			}
			Fail(TEXT("Unterminated string."));
			return false;
		}

		TSharedPtr<FJsonValue> ParseNumber()
		{
			const size_t Start = Position;
			if (Text[Position] == u'-')
			{
				++Position;
			}
			if (Position >= Text.size() || !FChar::IsDigit(Text[Position]))
			{
				return Fail(TEXT("Bad number."));
			}
			if (Text[Position] == u'0')
			{
				++Position;
				if (Position < Text.size() && FChar::IsDigit(Text[Position]))
				{
					return Fail(TEXT("Bad number: leading zero."));
				}
			}
			else
			{
				while (Position < Text.size() && FChar::IsDigit(Text[Position]))
				{
					++Position;
				}
			}
			if (Position < Text.size() && Text[Position] == u'.')
			{
				++Position;
				if (Position >= Text.size() || !FChar::IsDigit(Text[Position]))
				{
					return Fail(TEXT("Bad number: digits expected after '.'."));
				}
				while (Position < Text.size() && FChar::IsDigit(Text[Position]))
				{
					++Position;
				}
			}
			if (Position < Text.size() && (Text[Position] == u'e' || Text[Position] == u'E'))
			{
				++Position;
				if (Position < Text.size() && (Text[Position] == u'+' || Text[Position] == u'-'))
				{
					++Position;
				}
				if (Position >= Text.size() || !FChar::IsDigit(Text[Position]))
				{
					return Fail(TEXT("Bad number: exponent digits expected."));
				}
				while (Position < Text.size() && FChar::IsDigit(Text[Position]))
				{
					++Position;
				}
			}
			const FString NumberText(Text.substr(Start, Position - Start));
			if (bNumbersAsStrings)
			{
				return MakeShared<FJsonValueNumberString>(NumberText);
			}
			double Number = 0.0;
			LexFromString(Number, *NumberText);
			return MakeShared<FJsonValueNumber>(Number);
		}

		const std::u16string& Text;
		bool bNumbersAsStrings;
		size_t Position = 0;
	};
}

TSharedPtr<FJsonValue> UECompatJson::Parse(TJsonReader<TCHAR>& Reader, EParseRoot Root, bool bStoreNumbersAsStrings)
{
	FJsonParser Parser(Reader.GetSourceText(), bStoreNumbersAsStrings);
	TSharedPtr<FJsonValue> Value = Parser.ParseRoot(Root);
	Reader.SetErrorMessage(Parser.Error);
	return Value;
}

// ---------------------------------------------------------------------------------------------
// Writer

FString EscapeJsonString(const FString& StringVal)
{
	std::u16string Out = u"\"";
	for (TCHAR Character : StringVal)
	{
		switch (Character)
		{
		case u'"': Out += u"\\\""; break;
		case u'\\': Out += u"\\\\"; break;
		case u'\n': Out += u"\\n"; break;
		case u'\r': Out += u"\\r"; break;
		case u'\t': Out += u"\\t"; break;
		case u'\b': Out += u"\\b"; break;
		case u'\f': Out += u"\\f"; break;
		default:
			if (Character < 0x20)
			{
				char Buffer[8];
				std::snprintf(Buffer, sizeof(Buffer), "\\u%04x", (unsigned)Character);
				for (const char* Cursor = Buffer; *Cursor; ++Cursor)
				{
					Out += (TCHAR)*Cursor;
				}
			}
			else
			{
				Out += Character;
			}
			break;
		}
	}
	Out += u'"';
	return FString(MoveTemp(Out));
}

namespace
{
	class FJsonTextWriter
	{
	public:
		FJsonTextWriter(FString& InOut, bool bInPretty) : Out(InOut), bPretty(bInPretty) {}

		void WriteScalar(const FJsonValue& Value)
		{
			switch (Value.Type)
			{
			case EJson::String:
				Out += EscapeJsonString(Value.AsString());
				break;
			case EJson::Number:
				if (Value.PreferStringRepresentation())
				{
					Out += Value.AsString();
				}
				else
				{
					char Buffer[64];
					std::snprintf(Buffer, sizeof(Buffer), "%.17g", Value.AsNumber());
					Out += UECompatFromUtf8(Buffer);
				}
				break;
			case EJson::Boolean:
				Out += Value.AsBool() ? TEXT("true") : TEXT("false");
				break;
			default:
				Out += TEXT("null");
				break;
			}
		}

		// Writes an object or array from its opening to its closing bracket.
		void WriteComposite(const FJsonValue& Value, int32 Level)
		{
			if (Value.Type == EJson::Object)
			{
				Out += u'{';
				const TSharedPtr<FJsonObject>& Object = Value.AsObject();
				const int32 Count = Object.IsValid() ? Object->Values.Num() : 0;
				int32 Written = 0;
				if (Object.IsValid())
				{
					for (const auto& Pair : Object->Values)
					{
						NewLine(Level + 1);
						Out += EscapeJsonString(Pair.Key);
						Out += u':';
						const FJsonValue* Member = Pair.Value.Get();
						if (Member && Member->Type == EJson::Object)
						{
							NewLine(Level + 1);
							WriteComposite(*Member, Level + 1);
						}
						else
						{
							Space();
							WriteElement(Member, Level + 1);
						}
						if (++Written < Count)
						{
							Out += u',';
						}
					}
				}
				NewLine(Level);
				Out += u'}';
				return;
			}
			Out += u'[';
			const TArray<TSharedPtr<FJsonValue>>& Items = Value.AsArray();
			if (Items.IsEmpty())
			{
				Out += u']';
				return;
			}
			for (int32 Index = 0; Index < Items.Num(); ++Index)
			{
				NewLine(Level + 1);
				WriteElement(Items[Index].Get(), Level + 1);
				if (Index + 1 < Items.Num())
				{
					Out += u',';
				}
			}
			NewLine(Level);
			Out += u']';
		}

		void WriteElement(const FJsonValue* Value, int32 Level)
		{
			if (Value && (Value->Type == EJson::Object || Value->Type == EJson::Array))
			{
				WriteComposite(*Value, Level);
			}
			else if (Value)
			{
				WriteScalar(*Value);
			}
			else
			{
				Out += TEXT("null");
			}
		}

	private:
		void NewLine(int32 Level)
		{
			if (bPretty)
			{
				// The engine's Windows line terminator.
				Out += TEXT("\r\n");
				for (int32 Index = 0; Index < Level; ++Index)
				{
					Out += u'\t';
				}
			}
		}
		void Space()
		{
			if (bPretty)
			{
				Out += u' ';
			}
		}

		FString& Out;
		bool bPretty;
	};
}

void UECompatJson::Write(FString& Out, const FJsonValue* Value, const FString* Identifier, bool bPretty, int32 InitialIndent)
{
	FJsonTextWriter Writer(Out, bPretty);
	if (Identifier)
	{
		Out += EscapeJsonString(*Identifier);
		Out += bPretty ? TEXT(": ") : TEXT(":");
	}
	Writer.WriteElement(Value, InitialIndent);
}
