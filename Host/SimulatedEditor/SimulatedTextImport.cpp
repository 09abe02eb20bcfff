// Property values read from text as the engine's ImportText reads them, leniency included: a
// value is a prefix of the text and the rest is ignored; floats never fail; an object path that
// resolves to nothing sets null and succeeds; a struct field that fails to parse is skipped and
// the struct still succeeds; fields not named keep their values; values are written as they are
// read, so a struct or array that fails halfway keeps what was read before the failure.
#include "SimulatedEditor.h"

#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"

namespace
{
	bool IsNumberCharacter(TCHAR Character)
	{
		return FChar::IsDigit(Character) || Character == TEXT('+') || Character == TEXT('-') || Character == TEXT('.');
	}

	// Truncates to the width of the property's integer type, as storing into it does.
	int64 StoreInteger(ESimulatedPropertyType Type, int64 Value)
	{
		switch (Type)
		{
		case ESimulatedPropertyType::Byte:
		case ESimulatedPropertyType::ByteEnum:
			return Value & 0xFF;
		case ESimulatedPropertyType::UInt16:
			return Value & 0xFFFF;
		case ESimulatedPropertyType::Int:
		case ESimulatedPropertyType::Enum:
			return (int32)Value;
		default:
			return Value;
		}
	}

	// An enumerator by name (any case), also as Enum::Name; INDEX_NONE when there is none.
	int32 FindEnumerator(const FSimulatedType& Enum, const FString& Token)
	{
		FString Name = Token;
		FString Prefix;
		FString ShortName;
		if (Token.Split(TEXT("::"), &Prefix, &ShortName))
		{
			if (!Prefix.Equals(Enum.Name, ESearchCase::IgnoreCase))
			{
				return INDEX_NONE;
			}
			Name = ShortName;
		}
		for (int32 Index = 0; Index < Enum.EnumNames.Num(); ++Index)
		{
			if (Enum.EnumNames[Index].Equals(Name, ESearchCase::IgnoreCase))
			{
				return Index;
			}
		}
		return INDEX_NONE;
	}
}

// Reads values from one text, position by position, the engine's Buffer pointer.
class FSimulatedTextParser
{
public:
	FSimulatedTextParser(const FSimulatedEditor& InEditor, const FString& InText, const FSimulatedObject* InOwner)
		: Editor(InEditor)
		, Text(InText)
		, Owner(InOwner)
	{
	}

	// One value at the current position, written into Value. False where the engine returns null.
	bool ImportValue(const FSimulatedProperty& Property, FSimulatedValue& Value, bool bDelimited)
	{
		switch (Property.Type)
		{
		case ESimulatedPropertyType::Bool:
			return ImportBool(Value);
		case ESimulatedPropertyType::Byte:
		case ESimulatedPropertyType::Int:
		case ESimulatedPropertyType::Int64:
		case ESimulatedPropertyType::UInt16:
			return ImportInteger(Property, Value, bDelimited);
		case ESimulatedPropertyType::Float:
		case ESimulatedPropertyType::Double:
			return ImportReal(Property, Value);
		case ESimulatedPropertyType::String:
			return ImportString(Value, bDelimited);
		case ESimulatedPropertyType::Name:
			return ImportName(Value, bDelimited);
		case ESimulatedPropertyType::Text:
			return ImportText(Value, bDelimited);
		case ESimulatedPropertyType::ByteEnum:
		case ESimulatedPropertyType::Enum:
			return ImportEnum(Property, Value);
		case ESimulatedPropertyType::Struct:
			return ImportStruct(*Property.TypeObject, Value, bDelimited);
		case ESimulatedPropertyType::Object:
		case ESimulatedPropertyType::Class:
		case ESimulatedPropertyType::SoftObject:
			return ImportReference(Property, Value);
		case ESimulatedPropertyType::Array:
			return ImportArray(Property, Value);
		}
		return Fail(TEXT("Unknown property type."));
	}

	const FString& GetError() const { return Error; }

private:
	TCHAR Peek() const { return Position < Text.Len() ? Text[Position] : TEXT('\0'); }
	bool AtEnd() const { return Position >= Text.Len(); }
	FString Rest() const { return Text.Mid(Position); }

	void SkipWhitespace()
	{
		while (!AtEnd() && FChar::IsWhitespace(Text[Position]))
		{
			++Position;
		}
	}

	// The innermost reason is the one kept.
	bool Fail(const FString& Message)
	{
		if (Error.IsEmpty())
		{
			Error = Message;
		}
		return false;
	}

	// FParse::QuotedString: from an opening quote to the closing one, with backslash escapes.
	bool ReadQuotedString(FString& OutText)
	{
		OutText.Reset();
		const int32 Start = Position++;
		while (!AtEnd())
		{
			TCHAR Character = Text[Position++];
			if (Character == TEXT('"'))
			{
				return true;
			}
			if (Character == TEXT('\\') && !AtEnd())
			{
				Character = Text[Position++];
				Character = Character == TEXT('n') ? TEXT('\n') : (Character == TEXT('t') ? TEXT('\t') : (Character == TEXT('r') ? TEXT('\r') : Character));
			}
			OutText += Character;
		}
		return Fail(FString::Printf(TEXT("Bad quoted string: %s"), *Text.Mid(Start)));
	}

	// The engine's token reader: a quoted string, or a run of letters, digits and _ - + (with
	// . / : for dotted names) that starts with a letter or digit (or / for dotted names). Any
	// other character gives an empty token and nothing is consumed.
	bool ReadToken(FString& OutToken, bool bDottedNames)
	{
		OutToken.Reset();
		if (Peek() == TEXT('"'))
		{
			return ReadQuotedString(OutToken);
		}
		const auto IsTokenCharacter = [bDottedNames](TCHAR Character)
		{
			return FChar::IsAlnum(Character) || Character == TEXT('_') || Character == TEXT('-') || Character == TEXT('+') || Character > 255
				|| (bDottedNames && (Character == TEXT('.') || Character == TEXT('/') || Character == TEXT(':')));
		};
		if (FChar::IsAlnum(Peek()) || Peek() > 255 || (bDottedNames && Peek() == TEXT('/')))
		{
			while (!AtEnd() && IsTokenCharacter(Text[Position]))
			{
				OutToken += Text[Position++];
			}
		}
		return true;
	}

	bool ImportBool(FSimulatedValue& Value)
	{
		FString Token;
		if (!ReadToken(Token, false))
		{
			return false;
		}
		for (const TCHAR* Word : {TEXT("1"), TEXT("True"), TEXT("Yes")})
		{
			if (Token.Equals(Word, ESearchCase::IgnoreCase))
			{
				Value.Bool = true;
				return true;
			}
		}
		for (const TCHAR* Word : {TEXT("0"), TEXT("False"), TEXT("No")})
		{
			if (Token.Equals(Word, ESearchCase::IgnoreCase))
			{
				Value.Bool = false;
				return true;
			}
		}
		return Fail(FString::Printf(TEXT("'%s' is not a bool."), *Token));
	}

	bool ImportInteger(const FSimulatedProperty& Property, FSimulatedValue& Value, bool bDelimited)
	{
		// A byte property without an enum takes the whole text True or False as 1 or 0.
		if (Property.Type == ESimulatedPropertyType::Byte && !bDelimited && (Rest().Equals(TEXT("True"), ESearchCase::CaseSensitive) || Rest().Equals(TEXT("False"), ESearchCase::CaseSensitive)))
		{
			Value.Integer = Rest().Equals(TEXT("True"), ESearchCase::CaseSensitive) ? 1 : 0;
			Position = Text.Len();
			return true;
		}
		// A leading letter reads Enum::Value of any enum.
		if (FChar::IsAlpha(Peek()))
		{
			FString Token;
			ReadToken(Token, true);
			FString EnumName;
			FString ValueName;
			const FSimulatedType* Enum = Token.Split(TEXT("::"), &EnumName, &ValueName) ? Editor.FindType(ESimulatedTypeKind::Enum, EnumName) : nullptr;
			const int32 Index = Enum ? FindEnumerator(*Enum, ValueName) : INDEX_NONE;
			if (Index == INDEX_NONE)
			{
				return Fail(FString::Printf(TEXT("'%s' is not a number."), *Token));
			}
			Value.Integer = StoreInteger(Property.Type, Enum->EnumValues[Index]);
			return true;
		}
		const int32 Start = Position;
		int64 Parsed = 0;
		if (Rest().StartsWith(TEXT("0x"), ESearchCase::IgnoreCase))
		{
			Position += 2;
			while (!AtEnd() && GetHexDigitValue(Text[Position]) >= 0)
			{
				Parsed = Parsed * 16 + GetHexDigitValue(Text[Position++]);
			}
		}
		else
		{
			while (!AtEnd() && (Text[Position] == TEXT('-') || Text[Position] == TEXT('+')))
			{
				++Position;
			}
			while (!AtEnd() && FChar::IsDigit(Text[Position]))
			{
				++Position;
			}
			if (Position == Start)
			{
				FString Token;
				ReadToken(Token, false);
				return Fail(FString::Printf(TEXT("'%s' is not a number."), *(Token.IsEmpty() ? Rest() : Token)));
			}
			// The value is read from the start as atoi would: one sign, then digits ("+-5" is 0).
			int32 Index = Start;
			const bool bNegative = Text[Index] == TEXT('-');
			Index += (Text[Index] == TEXT('-') || Text[Index] == TEXT('+')) ? 1 : 0;
			while (Index < Position && FChar::IsDigit(Text[Index]))
			{
				Parsed = Parsed * 10 + (Text[Index++] - TEXT('0'));
			}
			Parsed = bNegative ? -Parsed : Parsed;
		}
		Value.Integer = StoreInteger(Property.Type, Parsed);
		return true;
	}

	bool ImportReal(const FSimulatedProperty& Property, FSimulatedValue& Value)
	{
		// The pointer passes sign, digits and dots and an f suffix; the value is read from the
		// whole rest as strtod would, so nothing ever fails.
		const int32 Start = Position;
		while (!AtEnd() && IsNumberCharacter(Text[Position]))
		{
			++Position;
		}
		if (Peek() == TEXT('f') || Peek() == TEXT('F'))
		{
			++Position;
		}
		Value.Real = FCString::Atod(*Text.Mid(Start));
		if (Property.Type == ESimulatedPropertyType::Float)
		{
			Value.Real = (double)(float)Value.Real;
		}
		return true;
	}

	bool ImportString(FSimulatedValue& Value, bool bDelimited)
	{
		if (!bDelimited)
		{
			// The whole text, quotes and all.
			Value.Text = Rest();
			Position = Text.Len();
			return true;
		}
		if (Peek() != TEXT('"'))
		{
			return Fail(FString::Printf(TEXT("Missing opening '\"' in string property value: %s"), *Rest()));
		}
		FString Quoted;
		if (!ReadQuotedString(Quoted))
		{
			return false;
		}
		Value.Text = Quoted;
		return true;
	}

	bool ImportName(FSimulatedValue& Value, bool bDelimited)
	{
		FString Name;
		if (!bDelimited)
		{
			Name = Rest();
			Position = Text.Len();
		}
		else if (!ReadToken(Name, true))
		{
			return false;
		}
		Value.Text = Name.Equals(TEXT("None"), ESearchCase::IgnoreCase) ? FString() : Name;
		return true;
	}

	// Macro(arguments) with ArgumentCount quoted arguments; false without consuming when the text
	// is not that macro or the macro is malformed.
	bool ReadTextMacro(const TCHAR* Macro, int32 ArgumentCount, TArray<FString>& OutArguments)
	{
		const int32 Start = Position;
		const FString Opening = FString(Macro) + TEXT("(");
		if (!Rest().StartsWith(Opening, ESearchCase::CaseSensitive))
		{
			return false;
		}
		Position += Opening.Len();
		OutArguments.Reset();
		const FString SavedError = Error;
		const auto GiveUp = [this, Start, &SavedError]()
		{
			Position = Start;
			Error = SavedError;
			return false;
		};
		for (int32 Index = 0; Index < ArgumentCount; ++Index)
		{
			SkipWhitespace();
			if (Index > 0)
			{
				if (Peek() != TEXT(','))
				{
					return GiveUp();
				}
				++Position;
				SkipWhitespace();
			}
			FString Argument;
			if (Peek() != TEXT('"') || !ReadQuotedString(Argument))
			{
				return GiveUp();
			}
			OutArguments.Add(Argument);
		}
		SkipWhitespace();
		if (Peek() != TEXT(')'))
		{
			return GiveUp();
		}
		++Position;
		return true;
	}

	bool ImportText(FSimulatedValue& Value, bool bDelimited)
	{
		TArray<FString> Arguments;
		FSimulatedValue Read;
		if (ReadTextMacro(TEXT("NSLOCTEXT"), 3, Arguments))
		{
			Read.TextIdentity = ESimulatedTextIdentity::Localized;
			Read.TextNamespace = Arguments[0];
			Read.TextKey = Arguments[1];
			Read.Text = Arguments[2];
		}
		else if (ReadTextMacro(TEXT("LOCTEXT"), 2, Arguments))
		{
			Read.TextIdentity = ESimulatedTextIdentity::Localized;
			Read.TextKey = Arguments[0];
			Read.Text = Arguments[1];
		}
		else if (ReadTextMacro(TEXT("INVTEXT"), 1, Arguments))
		{
			Read.TextIdentity = ESimulatedTextIdentity::CultureInvariant;
			Read.Text = Arguments[0];
		}
		else if (ReadTextMacro(TEXT("LOCTABLE"), 2, Arguments))
		{
			Read.TextIdentity = ESimulatedTextIdentity::StringTable;
			Read.TextNamespace = Arguments[0];
			Read.TextKey = Arguments[1];
		}
		else if (!bDelimited)
		{
			// Anything else at top level is FText::FromString of the whole text: never a failure.
			Read.Text = Rest();
			Position = Text.Len();
		}
		else if (Peek() != TEXT('"') || !ReadQuotedString(Read.Text))
		{
			return Fail(FString::Printf(TEXT("'%s' is neither a text macro nor a quoted text."), *Rest()));
		}
		Value.Text = Read.Text;
		Value.TextIdentity = Read.TextIdentity;
		Value.TextNamespace = Read.TextNamespace;
		Value.TextKey = Read.TextKey;
		return true;
	}

	bool ImportEnum(const FSimulatedProperty& Property, FSimulatedValue& Value)
	{
		// Enums are the one kind that skips leading white space.
		SkipWhitespace();
		FString Token;
		if (!ReadToken(Token, true))
		{
			return false;
		}
		const FSimulatedType& Enum = *Property.TypeObject;
		const int32 Index = FindEnumerator(Enum, Token);
		if (Index != INDEX_NONE)
		{
			Value.Integer = Enum.EnumValues[Index];
			return true;
		}
		// A plain number names the enumerator with that value.
		if (Token.IsNumeric() && !Token.Contains(TEXT(".")) && Enum.EnumValues.Contains(FCString::Atoi64(*Token)))
		{
			Value.Integer = FCString::Atoi64(*Token);
			return true;
		}
		return Fail(FString::Printf(TEXT("'%s' is not a value of %s."), *Token, *Enum.Name));
	}

	bool ImportStruct(const FSimulatedType& Struct, FSimulatedValue& Value, bool bDelimited)
	{
		if (Struct.StructTextForm == ESimulatedStructTextForm::Verbatim)
		{
			Value.Text = bDelimited ? ReadBalanced() : Rest().TrimStartAndEnd();
			Position = bDelimited ? Position : Text.Len();
			return true;
		}
		// FGuid's own reader takes exactly 32 hexadecimal digits; anything else goes to the
		// generic reader below, which wants "(A=...,B=...)".
		if (Struct.StructTextForm == ESimulatedStructTextForm::Guid && Text.Len() - Position >= 32)
		{
			bool bHex = true;
			for (int32 Index = Position; Index < Position + 32; ++Index)
			{
				bHex = bHex && GetHexDigitValue(Text[Index]) >= 0;
			}
			if (bHex)
			{
				Value.Items.resize(Struct.AllProperties.size());
				for (int32 Part = 0; Part < 4 && (size_t)Part < Value.Items.size(); ++Part)
				{
					uint32 PartValue = 0;
					for (int32 Index = Position + Part * 8; Index < Position + Part * 8 + 8; ++Index)
					{
						PartValue = PartValue * 16 + (uint32)GetHexDigitValue(Text[Index]);
					}
					Value.Items[(size_t)Part].Integer = (int32)PartValue;
				}
				Position += 32;
				return true;
			}
		}
		return ImportStructFields(Struct, Value);
	}

	// The generic struct reader: "(" then Name=Value pairs in any order, ")".
	bool ImportStructFields(const FSimulatedType& Struct, FSimulatedValue& Value)
	{
		const FString StartText = Rest();
		if (Peek() != TEXT('('))
		{
			return Fail(FString::Printf(TEXT("Missing opening parenthesis: %s"), *StartText));
		}
		++Position;
		while (Peek() != TEXT(')'))
		{
			ImportStructField(Struct, Value);
			// Whatever the field left unread is skipped up to the next "," or ")" outside quotes
			// and parentheses.
			SkipWhitespace();
			int32 Depth = 0;
			while (!AtEnd() && Peek() != TEXT('\r') && Peek() != TEXT('\n') && (Depth > 0 || (Peek() != TEXT(')') && Peek() != TEXT(','))))
			{
				SkipWhitespace();
				if (Peek() == TEXT('"'))
				{
					do
					{
						++Position;
					} while (!AtEnd() && Peek() != TEXT('"') && Peek() != TEXT('\n') && Peek() != TEXT('\r'));
					if (Peek() != TEXT('"'))
					{
						return Fail(FString::Printf(TEXT("Bad quoted string at: %s"), *Rest()));
					}
				}
				else if (Peek() == TEXT('('))
				{
					++Depth;
				}
				else if (Peek() == TEXT(')') && --Depth < 0)
				{
					return Fail(FString::Printf(TEXT("Too many closing parenthesis in: %s"), *StartText));
				}
				if (!AtEnd())
				{
					++Position;
				}
			}
			if (Depth > 0)
			{
				return Fail(FString::Printf(TEXT("Not enough closing parenthesis in: %s"), *StartText));
			}
			if (Peek() == TEXT(','))
			{
				++Position;
			}
			else if (Peek() != TEXT(')'))
			{
				return Fail(FString::Printf(TEXT("Missing closing parenthesis: %s"), *StartText));
			}
			SkipWhitespace();
		}
		++Position;
		return true;
	}

	// One Name=Value pair. An unknown name, a transient field, a missing "=", an empty value or
	// a value that does not parse leaves the position at the value for the caller to skip; the
	// struct goes on either way.
	void ImportStructField(const FSimulatedType& Struct, FSimulatedValue& Value)
	{
		SkipWhitespace();
		const int32 NameStart = Position;
		while (!AtEnd() && Peek() != TEXT('=') && Peek() != TEXT('(') && Peek() != TEXT('[') && Peek() != TEXT(',') && Peek() != TEXT(')') && Peek() != TEXT('"'))
		{
			++Position;
		}
		const int32 FieldIndex = Struct.FindPropertyIndex(Text.Mid(NameStart, Position - NameStart).TrimEnd());
		if (FieldIndex == INDEX_NONE || (size_t)FieldIndex >= Value.Items.size() || Peek() != TEXT('='))
		{
			return;
		}
		const FSimulatedProperty& Field = *Struct.AllProperties[(size_t)FieldIndex];
		// Import also ports deprecated fields, but never transient ones.
		if ((Field.Flags & ZorvekMCPBridgePropertyFlags::Transient) != 0)
		{
			return;
		}
		++Position;
		SkipWhitespace();
		if (Peek() == TEXT(',') || Peek() == TEXT(')'))
		{
			return;
		}
		const int32 ValueStart = Position;
		const FString SavedError = Error;
		if (!ImportValue(Field, Value.Items[(size_t)FieldIndex], true) || Position == ValueStart)
		{
			Position = ValueStart;
			Error = SavedError;
		}
	}

	// Up to the next "," or ")" outside quotes and parentheses, trimmed.
	FString ReadBalanced()
	{
		const int32 Start = Position;
		int32 Depth = 0;
		bool bInQuotes = false;
		for (; !AtEnd(); ++Position)
		{
			const TCHAR Character = Text[Position];
			if (bInQuotes)
			{
				Position += Character == TEXT('\\') ? 1 : 0;
				bInQuotes = Character != TEXT('"');
			}
			else if (Character == TEXT('"'))
			{
				bInQuotes = true;
			}
			else if (Character == TEXT('('))
			{
				++Depth;
			}
			else if ((Character == TEXT(')') || Character == TEXT(',')) && Depth == 0)
			{
				break;
			}
			else if (Character == TEXT(')'))
			{
				--Depth;
			}
		}
		return Text.Mid(Start, Position - Start).TrimStartAndEnd();
	}

	bool ImportReference(const FSimulatedProperty& Property, FSimulatedValue& Value)
	{
		FString Token;
		if (!ReadToken(Token, true))
		{
			return false;
		}
		FString Path = Token;
		if (!Token.Equals(TEXT("None"), ESearchCase::IgnoreCase))
		{
			SkipWhitespace();
			// Class'Path' (the path possibly quoted).
			if (Peek() == TEXT('\''))
			{
				++Position;
				if (!ReadToken(Path, true))
				{
					return false;
				}
				if (Peek() != TEXT('\''))
				{
					return Fail(FString::Printf(TEXT("Missing closing ' in object reference: %s"), *Text));
				}
				++Position;
			}
			// The quoted form "Class'Path'" holds the class inside the quotes.
			int32 QuoteIndex = INDEX_NONE;
			if (Path.EndsWith(TEXT("'")) && Path.FindChar(TEXT('\''), QuoteIndex) && QuoteIndex < Path.Len() - 1)
			{
				Path = Path.Mid(QuoteIndex + 1, Path.Len() - QuoteIndex - 2);
			}
		}
		else
		{
			Path.Reset();
		}

		if (Property.Type == ESimulatedPropertyType::SoftObject)
		{
			// Soft paths are kept as written and not loaded; the object counts when in memory.
			Value.Text = Path;
			Value.Object = Path.IsEmpty() ? nullptr : Resolve(Path, nullptr);
			return true;
		}
		FSimulatedObject* Found = nullptr;
		if (!Path.IsEmpty() && Property.Type == ESimulatedPropertyType::Class)
		{
			Found = Resolve(Path, Editor.GetClassClass());
			const FSimulatedType* FoundClass = dynamic_cast<const FSimulatedType*>(Found);
			if (FoundClass && !FoundClass->IsChildOf(Property.TypeObject))
			{
				return Fail(FString::Printf(TEXT("Invalid object '%s' specified for property '%s'"), *Path, *Property.Name));
			}
		}
		else if (!Path.IsEmpty())
		{
			// The search asks for the property's class, so an object of another class is not found.
			Found = Resolve(Path, Property.TypeObject);
		}
		Value.Object = Found;
		Value.Text.Reset();
		return true;
	}

	// The engine's search for an imported path: inside the owner and its outers, then the full
	// path, then any package by short name. Objects of packages that do not load are not found.
	FSimulatedObject* Resolve(const FString& Path, const FSimulatedType* Class) const
	{
		const auto Accept = [Class](FSimulatedObject* Candidate) -> FSimulatedObject*
		{
			for (const FSimulatedObject* Current = Candidate; Current; Current = Current->Outer)
			{
				if (!Current->bLoadable)
				{
					return nullptr;
				}
			}
			return Candidate && (!Class || Candidate->Class->IsChildOf(Class)) ? Candidate : nullptr;
		};
		const bool bShortName = !Path.Contains(TEXT("/")) && !Path.Contains(TEXT(".")) && !Path.Contains(TEXT(":"));
		if (bShortName)
		{
			for (const FSimulatedObject* Outer = Owner; Outer && !Outer->IsPackage(); Outer = Outer->Outer)
			{
				const TCHAR* Separator = (Outer->Outer && Outer->Outer->IsPackage()) ? TEXT(":") : TEXT(".");
				if (FSimulatedObject* Found = Accept(Editor.FindObject(Outer->GetPathName() + Separator + Path)))
				{
					return Found;
				}
			}
		}
		if (FSimulatedObject* Found = Accept(Editor.FindObject(Path)))
		{
			return Found;
		}
		return bShortName ? Accept(Editor.FindObjectByShortName(Path, Class)) : nullptr;
	}

	bool ImportArray(const FSimulatedProperty& Property, FSimulatedValue& Value)
	{
		// An empty text (what an empty array exports) empties the array; so does one that starts
		// with ")" or ",".
		if (AtEnd() || Peek() == TEXT(')') || Peek() == TEXT(','))
		{
			Value.Items.clear();
			return true;
		}
		if (Peek() != TEXT('('))
		{
			return Fail(FString::Printf(TEXT("Missing opening parenthesis: %s"), *Rest()));
		}
		++Position;
		// The whole array is replaced, element by element.
		Value.Items.clear();
		SkipWhitespace();
		if (Peek() == TEXT(')'))
		{
			++Position;
			return true;
		}
		const FSimulatedProperty& Inner = *Property.Inner;
		size_t Index = 0;
		Value.Items.push_back(Editor.MakeDefaultValue(Inner));
		while (Peek() != TEXT(')'))
		{
			SkipWhitespace();
			if (Peek() != TEXT(','))
			{
				if (!ImportValue(Inner, Value.Items[Index], true))
				{
					return false;
				}
				SkipWhitespace();
			}
			if (Peek() != TEXT(','))
			{
				break;
			}
			++Position;
			++Index;
			Value.Items.push_back(Editor.MakeDefaultValue(Inner));
		}
		if (Peek() != TEXT(')'))
		{
			return Fail(FString::Printf(TEXT("Missing closing parenthesis in array: %s"), *Text));
		}
		++Position;
		return true;
	}

	const FSimulatedEditor& Editor;
	const FString& Text;
	const FSimulatedObject* Owner;
	int32 Position = 0;
	FString Error;
};

bool FSimulatedEditor::ImportValueText(const FSimulatedProperty& Property, FSimulatedValue& Value, const FString& Text, FString& OutError, const FSimulatedObject* Owner) const
{
	FSimulatedTextParser Parser(*this, Text, Owner);
	if (!Parser.ImportValue(Property, Value, false))
	{
		OutError = Parser.GetError();
		return false;
	}
	return true;
}
