// The engine's text forms of property values, as the simulated editor exports and imports them:
// True/False, numbers with six decimals for floats, enumerator names, "(Field=Value,...)" for
// structs (32 hex digits for GUIDs), "(a,b)" for arrays (empty text for an empty array),
// Class'Path' for object references and None for null. Inside structs and arrays strings, names
// and paths are quoted.
#include "SimulatedEditor.h"

#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"

namespace
{
	bool IsNumberStart(TCHAR Character)
	{
		return FChar::IsDigit(Character) || Character == TEXT('-') || Character == TEXT('+') || Character == TEXT('.');
	}

	// The longest prefix that reads as a number; empty when there is none.
	FString TakeNumberPrefix(const FString& Token, bool bAllowFraction)
	{
		int32 Index = 0;
		if (Index < Token.Len() && (Token[Index] == TEXT('-') || Token[Index] == TEXT('+')))
		{
			++Index;
		}
		int32 Digits = 0;
		while (Index < Token.Len() && FChar::IsDigit(Token[Index]))
		{
			++Index;
			++Digits;
		}
		int32 End = Index;
		if (bAllowFraction && Index < Token.Len() && Token[Index] == TEXT('.'))
		{
			++Index;
			while (Index < Token.Len() && FChar::IsDigit(Token[Index]))
			{
				++Index;
				++Digits;
			}
			End = Index;
			if (Digits > 0 && Index < Token.Len() && (Token[Index] == TEXT('e') || Token[Index] == TEXT('E')))
			{
				int32 ExponentIndex = Index + 1;
				if (ExponentIndex < Token.Len() && (Token[ExponentIndex] == TEXT('-') || Token[ExponentIndex] == TEXT('+')))
				{
					++ExponentIndex;
				}
				const int32 ExponentStart = ExponentIndex;
				while (ExponentIndex < Token.Len() && FChar::IsDigit(Token[ExponentIndex]))
				{
					++ExponentIndex;
				}
				if (ExponentIndex > ExponentStart)
				{
					End = ExponentIndex;
				}
			}
		}
		return Digits > 0 ? Token.Left(End) : FString();
	}

	FString QuoteText(const FString& Text)
	{
		FString Quoted = TEXT("\"");
		for (TCHAR Character : Text)
		{
			if (Character == TEXT('"') || Character == TEXT('\\'))
			{
				Quoted += TEXT('\\');
			}
			Quoted += Character;
		}
		Quoted += TEXT('"');
		return Quoted;
	}

	FString FormatGuid(const FSimulatedValue& Value)
	{
		FString Text;
		for (size_t Index = 0; Index < 4; ++Index)
		{
			const uint32 Part = Index < Value.Items.size() ? (uint32)Value.Items[Index].Integer : 0;
			Text += FString::Printf(TEXT("%08X"), Part);
		}
		return Text;
	}
}

FString FSimulatedEditor::GetCppType(const FSimulatedProperty& Property) const
{
	const FSimulatedType* Type = Property.TypeObject;
	switch (Property.Type)
	{
	case ESimulatedPropertyType::Bool:
		return TEXT("bool");
	case ESimulatedPropertyType::Byte:
		return TEXT("uint8");
	case ESimulatedPropertyType::Int:
		return TEXT("int32");
	case ESimulatedPropertyType::Int64:
		return TEXT("int64");
	case ESimulatedPropertyType::UInt16:
		return TEXT("uint16");
	case ESimulatedPropertyType::Float:
		return TEXT("float");
	case ESimulatedPropertyType::Double:
		return TEXT("double");
	case ESimulatedPropertyType::String:
		return TEXT("FString");
	case ESimulatedPropertyType::Name:
		return TEXT("FName");
	case ESimulatedPropertyType::Text:
		return TEXT("FText");
	case ESimulatedPropertyType::ByteEnum:
		return FString::Printf(TEXT("TEnumAsByte<%s>"), *Type->Name);
	case ESimulatedPropertyType::Enum:
		return Type->Name;
	case ESimulatedPropertyType::Struct:
		return FString::Printf(TEXT("F%s"), *Type->Name);
	case ESimulatedPropertyType::Object:
		return FString::Printf(TEXT("TObjectPtr<%s%s>"), Type->GetPrefixCpp(), *Type->Name);
	case ESimulatedPropertyType::SoftObject:
		return FString::Printf(TEXT("TSoftObjectPtr<%s%s>"), Type->GetPrefixCpp(), *Type->Name);
	case ESimulatedPropertyType::Class:
		return FString::Printf(TEXT("TSubclassOf<%s%s>"), Type->GetPrefixCpp(), *Type->Name);
	case ESimulatedPropertyType::Array:
		// The engine gives the element type only as extended type text.
		return TEXT("TArray");
	}
	return FString();
}

bool FSimulatedEditor::ExportValueText(const FSimulatedProperty& Property, const FSimulatedValue& Value, bool bDelimited, FString& OutText) const
{
	OutText.Reset();
	if (!Property.bExportable)
	{
		return false;
	}
	switch (Property.Type)
	{
	case ESimulatedPropertyType::Bool:
		OutText = Value.Bool ? TEXT("True") : TEXT("False");
		return true;
	case ESimulatedPropertyType::Byte:
	case ESimulatedPropertyType::Int:
	case ESimulatedPropertyType::Int64:
	case ESimulatedPropertyType::UInt16:
		OutText = FString::Printf(TEXT("%lld"), (long long)Value.Integer);
		return true;
	case ESimulatedPropertyType::Float:
	case ESimulatedPropertyType::Double:
		OutText = FString::Printf(TEXT("%f"), Value.Real);
		return true;
	case ESimulatedPropertyType::String:
	case ESimulatedPropertyType::Name:
		OutText = bDelimited ? QuoteText(Value.Text) : Value.Text;
		if (Property.Type == ESimulatedPropertyType::Name && Value.Text.IsEmpty())
		{
			OutText = bDelimited ? TEXT("\"None\"") : TEXT("None");
		}
		return true;
	case ESimulatedPropertyType::Text:
		OutText = FString::Printf(TEXT("INVTEXT(%s)"), *QuoteText(Value.Text));
		return true;
	case ESimulatedPropertyType::ByteEnum:
	case ESimulatedPropertyType::Enum:
	{
		const int32 Index = Property.TypeObject->EnumValues.Find(Value.Integer);
		OutText = Index != INDEX_NONE ? Property.TypeObject->EnumNames[Index] : FString(TEXT("(INVALID)"));
		return true;
	}
	case ESimulatedPropertyType::Struct:
	{
		const FSimulatedType* Struct = Property.TypeObject;
		if (Struct->StructTextForm == ESimulatedStructTextForm::Guid)
		{
			OutText = FormatGuid(Value);
			return true;
		}
		if (Struct->StructTextForm == ESimulatedStructTextForm::Verbatim)
		{
			OutText = Value.Text;
			return true;
		}
		int32 Written = 0;
		for (size_t Index = 0; Index < Struct->AllProperties.size() && Index < Value.Items.size(); ++Index)
		{
			const FSimulatedProperty& Field = *Struct->AllProperties[Index];
			FString FieldText;
			if ((Field.Flags & ZorvekMCPBridgePropertyFlags::Deprecated) != 0 || !ExportValueText(Field, Value.Items[Index], true, FieldText))
			{
				continue;
			}
			OutText += Written == 0 ? TEXT("(") : TEXT(",");
			OutText += Field.Name + TEXT("=") + FieldText;
			++Written;
		}
		OutText += Written == 0 ? TEXT("()") : TEXT(")");
		return true;
	}
	case ESimulatedPropertyType::Object:
	case ESimulatedPropertyType::Class:
		if (!Value.Object)
		{
			OutText = TEXT("None");
			return true;
		}
		OutText = FString::Printf(bDelimited ? TEXT("%s'\"%s\"'") : TEXT("%s'%s'"), *Value.Object->Class->GetPathName(), *Value.Object->GetPathName());
		return true;
	case ESimulatedPropertyType::SoftObject:
	{
		const FString Path = Value.Object ? Value.Object->GetPathName() : Value.Text;
		OutText = Path.IsEmpty() ? FString(TEXT("None")) : (bDelimited ? QuoteText(Path) : Path);
		return true;
	}
	case ESimulatedPropertyType::Array:
		for (size_t Index = 0; Index < Value.Items.size(); ++Index)
		{
			FString ItemText;
			ExportValueText(*Property.Inner, Value.Items[Index], true, ItemText);
			OutText += Index == 0 ? TEXT("(") : TEXT(",");
			OutText += ItemText;
		}
		if (!Value.Items.empty())
		{
			OutText += TEXT(")");
		}
		return true;
	}
	return false;
}

// Reads one value in the engine's text form. Top-level values take the whole text; delimited
// ones (inside structs and arrays) end at a "," or ")" outside quotes and parentheses.
class FSimulatedTextParser
{
public:
	FSimulatedTextParser(const FSimulatedEditor& InEditor, const FString& InText)
		: Editor(InEditor)
		, Text(InText)
	{
	}

	bool ParseValue(const FSimulatedProperty& Property, FSimulatedValue& Value, bool bDelimited)
	{
		SkipWhitespace();
		switch (Property.Type)
		{
		case ESimulatedPropertyType::Bool:
		{
			const FString Token = ReadToken(bDelimited);
			if (Token.Equals(TEXT("True"), ESearchCase::IgnoreCase) || Token.Equals(TEXT("Yes"), ESearchCase::IgnoreCase) || Token == TEXT("1"))
			{
				Value.Bool = true;
				return true;
			}
			if (Token.Equals(TEXT("False"), ESearchCase::IgnoreCase) || Token.Equals(TEXT("No"), ESearchCase::IgnoreCase) || Token == TEXT("0"))
			{
				Value.Bool = false;
				return true;
			}
			return Fail(FString::Printf(TEXT("'%s' is not a bool."), *Token));
		}
		case ESimulatedPropertyType::Byte:
		case ESimulatedPropertyType::Int:
		case ESimulatedPropertyType::Int64:
		case ESimulatedPropertyType::UInt16:
		{
			const FString Token = ReadToken(bDelimited);
			const FString Number = TakeNumberPrefix(Token, true);
			if (Number.IsEmpty() || !IsNumberStart(Token[0]))
			{
				return Fail(FString::Printf(TEXT("'%s' is not a number."), *Token));
			}
			Value.Integer = (int64)FCString::Atod(*Number);
			if (Property.Type == ESimulatedPropertyType::Byte)
			{
				Value.Integer &= 0xFF;
			}
			else if (Property.Type == ESimulatedPropertyType::UInt16)
			{
				Value.Integer &= 0xFFFF;
			}
			else if (Property.Type == ESimulatedPropertyType::Int)
			{
				Value.Integer = (int32)Value.Integer;
			}
			return true;
		}
		case ESimulatedPropertyType::Float:
		case ESimulatedPropertyType::Double:
		{
			const FString Token = ReadToken(bDelimited);
			const FString Number = Token.IsEmpty() ? FString() : TakeNumberPrefix(Token, true);
			if (Number.IsEmpty())
			{
				return Fail(FString::Printf(TEXT("'%s' is not a number."), *Token));
			}
			Value.Real = FCString::Atod(*Number);
			if (Property.Type == ESimulatedPropertyType::Float)
			{
				Value.Real = (double)(float)Value.Real;
			}
			return true;
		}
		case ESimulatedPropertyType::String:
		case ESimulatedPropertyType::Name:
		{
			if (Peek() == TEXT('"'))
			{
				return ReadQuoted(Value.Text);
			}
			Value.Text = bDelimited ? ReadToken(true) : Text.Mid(Position);
			Position = bDelimited ? Position : Text.Len();
			if (Property.Type == ESimulatedPropertyType::Name && Value.Text.Equals(TEXT("None"), ESearchCase::IgnoreCase))
			{
				Value.Text.Reset();
			}
			return true;
		}
		case ESimulatedPropertyType::Text:
			return ParseText(Value, bDelimited);
		case ESimulatedPropertyType::ByteEnum:
		case ESimulatedPropertyType::Enum:
			return ParseEnum(Property, Value, bDelimited);
		case ESimulatedPropertyType::Struct:
			return ParseStruct(Property, Value, bDelimited);
		case ESimulatedPropertyType::Object:
		case ESimulatedPropertyType::Class:
		case ESimulatedPropertyType::SoftObject:
			return ParseReference(Property, Value, bDelimited);
		case ESimulatedPropertyType::Array:
			return ParseArray(Property, Value);
		}
		return Fail(TEXT("Unknown property type."));
	}

	const FString& GetError() const { return Error; }

private:
	TCHAR Peek() const { return Position < Text.Len() ? Text[Position] : TEXT('\0'); }

	void SkipWhitespace()
	{
		while (Position < Text.Len() && FChar::IsWhitespace(Text[Position]))
		{
			++Position;
		}
	}

	bool Fail(const FString& Message)
	{
		if (Error.IsEmpty())
		{
			Error = Message;
		}
		return false;
	}

	// Up to the next top-level "," or ")" when delimited, else the rest of the text; trimmed.
	FString ReadToken(bool bDelimited)
	{
		const int32 Start = Position;
		int32 Depth = 0;
		bool bInQuotes = false;
		while (Position < Text.Len())
		{
			const TCHAR Character = Text[Position];
			if (bInQuotes)
			{
				if (Character == TEXT('\\'))
				{
					++Position;
				}
				else if (Character == TEXT('"'))
				{
					bInQuotes = false;
				}
			}
			else if (Character == TEXT('"'))
			{
				bInQuotes = true;
			}
			else if (Character == TEXT('('))
			{
				++Depth;
			}
			else if (Character == TEXT(')') || Character == TEXT(','))
			{
				if (bDelimited && Depth == 0)
				{
					break;
				}
				if (Character == TEXT(')'))
				{
					--Depth;
				}
			}
			++Position;
		}
		return Text.Mid(Start, Position - Start).TrimStartAndEnd();
	}

	bool ReadQuoted(FString& OutText)
	{
		OutText.Reset();
		if (Peek() != TEXT('"'))
		{
			return Fail(TEXT("Expected a quoted text."));
		}
		++Position;
		while (Position < Text.Len())
		{
			TCHAR Character = Text[Position++];
			if (Character == TEXT('"'))
			{
				return true;
			}
			if (Character == TEXT('\\') && Position < Text.Len())
			{
				Character = Text[Position++];
				if (Character == TEXT('n'))
				{
					Character = TEXT('\n');
				}
				else if (Character == TEXT('t'))
				{
					Character = TEXT('\t');
				}
			}
			OutText += Character;
		}
		return Fail(TEXT("A quoted text is not closed."));
	}

	bool Expect(TCHAR Character)
	{
		SkipWhitespace();
		if (Peek() != Character)
		{
			return Fail(FString::Printf(TEXT("Expected '%c' at position %d."), Character, Position));
		}
		++Position;
		return true;
	}

	// INVTEXT("..."), NSLOCTEXT("Namespace", "Key", "Source"), LOCTEXT("Key", "Source"), a quoted
	// text or a bare one.
	bool ParseText(FSimulatedValue& Value, bool bDelimited)
	{
		for (const TCHAR* Macro : {TEXT("INVTEXT("), TEXT("NSLOCTEXT("), TEXT("LOCTEXT(")})
		{
			if (Text.Mid(Position).StartsWith(Macro, ESearchCase::CaseSensitive))
			{
				Position += FCString::Strlen(Macro);
				// The last argument is the source text.
				FString Argument;
				while (true)
				{
					SkipWhitespace();
					if (!ReadQuoted(Argument))
					{
						return false;
					}
					SkipWhitespace();
					if (Peek() != TEXT(','))
					{
						break;
					}
					++Position;
				}
				Value.Text = Argument;
				return Expect(TEXT(')'));
			}
		}
		if (Peek() == TEXT('"'))
		{
			return ReadQuoted(Value.Text);
		}
		Value.Text = bDelimited ? ReadToken(true) : Text.Mid(Position);
		Position = bDelimited ? Position : Text.Len();
		return true;
	}

	bool ParseEnum(const FSimulatedProperty& Property, FSimulatedValue& Value, bool bDelimited)
	{
		FString Token = ReadToken(bDelimited);
		FString Qualifier;
		FString ShortName;
		if (Token.Split(TEXT("::"), &Qualifier, &ShortName))
		{
			Token = ShortName;
		}
		const FSimulatedType* Enum = Property.TypeObject;
		for (int32 Index = 0; Index < Enum->EnumNames.Num(); ++Index)
		{
			if (Enum->EnumNames[Index].Equals(Token, ESearchCase::IgnoreCase))
			{
				Value.Integer = Enum->EnumValues[Index];
				return true;
			}
		}
		const FString Number = TakeNumberPrefix(Token, false);
		if (!Number.IsEmpty() && Enum->EnumValues.Contains(FCString::Atoi64(*Number)))
		{
			Value.Integer = FCString::Atoi64(*Number);
			return true;
		}
		return Fail(FString::Printf(TEXT("'%s' is not a value of %s."), *Token, *Enum->Name));
	}

	bool ParseStruct(const FSimulatedProperty& Property, FSimulatedValue& Value, bool bDelimited)
	{
		const FSimulatedType* Struct = Property.TypeObject;
		if (Struct->StructTextForm == ESimulatedStructTextForm::Verbatim)
		{
			Value.Text = bDelimited ? ReadToken(true) : Text.Mid(Position).TrimStartAndEnd();
			Position = bDelimited ? Position : Text.Len();
			return true;
		}
		if (Struct->StructTextForm == ESimulatedStructTextForm::Guid)
		{
			FString Digits = ReadToken(bDelimited).Replace(TEXT("-"), TEXT("")).Replace(TEXT("{"), TEXT("")).Replace(TEXT("}"), TEXT(""));
			if (Digits.Len() != 32)
			{
				return Fail(FString::Printf(TEXT("'%s' is not a GUID of 32 hexadecimal digits."), *Digits));
			}
			Value.Items.resize(4);
			for (int32 Part = 0; Part < 4; ++Part)
			{
				uint32 PartValue = 0;
				for (int32 Index = Part * 8; Index < Part * 8 + 8; ++Index)
				{
					const int32 DigitValue = GetHexDigitValue(Digits[Index]);
					if (DigitValue < 0)
					{
						return Fail(FString::Printf(TEXT("'%s' is not a GUID of 32 hexadecimal digits."), *Digits));
					}
					PartValue = PartValue * 16 + (uint32)DigitValue;
				}
				Value.Items[(size_t)Part].Integer = (int32)PartValue;
			}
			return true;
		}
		return ParseList([this, Struct, &Value]()
		{
			SkipWhitespace();
			const int32 NameStart = Position;
			while (Position < Text.Len() && Text[Position] != TEXT('=') && Text[Position] != TEXT(',') && Text[Position] != TEXT(')'))
			{
				++Position;
			}
			const FString FieldName = Text.Mid(NameStart, Position - NameStart).TrimStartAndEnd();
			if (!Expect(TEXT('=')))
			{
				return false;
			}
			const int32 FieldIndex = Struct->FindPropertyIndex(FieldName);
			if (FieldIndex == INDEX_NONE)
			{
				return Fail(FString::Printf(TEXT("%s has no field %s."), *Struct->Name, *FieldName));
			}
			return ParseValue(*Struct->AllProperties[(size_t)FieldIndex], Value.Items[(size_t)FieldIndex], true);
		});
	}

	// "(item,item,...)" or "()", with ParseItem reading one item.
	bool ParseList(TFunctionRef<bool()> ParseItem)
	{
		if (!Expect(TEXT('(')))
		{
			return false;
		}
		SkipWhitespace();
		if (Peek() == TEXT(')'))
		{
			++Position;
			return true;
		}
		while (true)
		{
			if (!ParseItem())
			{
				return false;
			}
			SkipWhitespace();
			if (Peek() != TEXT(','))
			{
				return Expect(TEXT(')'));
			}
			++Position;
		}
	}

	bool ParseReference(const FSimulatedProperty& Property, FSimulatedValue& Value, bool bDelimited)
	{
		FString Path;
		if (Peek() == TEXT('"'))
		{
			if (!ReadQuoted(Path))
			{
				return false;
			}
		}
		else
		{
			Path = ReadToken(bDelimited);
		}
		// Class'Path' and Class'"Path"' name the class first.
		int32 QuoteIndex = INDEX_NONE;
		if (Path.FindChar(TEXT('\''), QuoteIndex) && Path.EndsWith(TEXT("'")) && Path.Len() > QuoteIndex + 1)
		{
			Path = Path.Mid(QuoteIndex + 1, Path.Len() - QuoteIndex - 2).TrimQuotes();
		}
		Value.Object = nullptr;
		Value.Text.Reset();
		if (Path.IsEmpty() || Path.Equals(TEXT("None"), ESearchCase::IgnoreCase))
		{
			return true;
		}
		FSimulatedObject* Target = Editor.FindObject(Path);
		if (Property.Type == ESimulatedPropertyType::SoftObject)
		{
			// Soft references may name assets that are not in memory.
			Value.Object = Target;
			Value.Text = Path;
			return true;
		}
		if (!Target)
		{
			return Fail(FString::Printf(TEXT("No object %s."), *Path));
		}
		if (Property.Type == ESimulatedPropertyType::Class)
		{
			const FSimulatedType* TargetClass = dynamic_cast<const FSimulatedType*>(Target);
			if (!TargetClass || TargetClass->Kind != ESimulatedTypeKind::Class || !TargetClass->IsChildOf(Property.TypeObject))
			{
				return Fail(FString::Printf(TEXT("%s is not a class derived from %s."), *Path, *Property.TypeObject->Name));
			}
		}
		else if (!Target->Class->IsChildOf(Property.TypeObject))
		{
			return Fail(FString::Printf(TEXT("%s is not a %s."), *Path, *Property.TypeObject->Name));
		}
		Value.Object = Target;
		return true;
	}

	bool ParseArray(const FSimulatedProperty& Property, FSimulatedValue& Value)
	{
		Value.Items.clear();
		SkipWhitespace();
		if (Position >= Text.Len())
		{
			return true;
		}
		return ParseList([this, &Property, &Value]()
		{
			FSimulatedValue Item = Editor.MakeDefaultValue(*Property.Inner);
			if (!ParseValue(*Property.Inner, Item, true))
			{
				return false;
			}
			Value.Items.push_back(std::move(Item));
			return true;
		});
	}

	const FSimulatedEditor& Editor;
	const FString& Text;
	int32 Position = 0;
	FString Error;
};

bool FSimulatedEditor::ImportValueText(const FSimulatedProperty& Property, FSimulatedValue& Value, const FString& Text, FString& OutError) const
{
	FSimulatedValue Parsed = Value;
	FSimulatedTextParser Parser(*this, Text);
	if (!Parser.ParseValue(Property, Parsed, false))
	{
		OutError = Parser.GetError();
		return false;
	}
	Value = std::move(Parsed);
	return true;
}
