// Material expression captions, written as the engine's GetCaption writes them: printf numbers
// ("Param (%.4g)", "TexCoord[%i]", "Time (Period of %.2f)"), names as they are, and pieces that
// depend on a flag ("Mask ( R G )"). The fixture states each class's lines as templates.
#include "SimulatedEditor.h"

#include <cstdio>

namespace
{
	// One printf conversion with its flags, width and precision, e.g. "%.4g", "%i", "%08X".
	bool IsSingleConversion(const FString& Format, bool& bOutInteger)
	{
		int32 Index = 0;
		if (Format.Len() < 2 || Format[Index++] != TEXT('%'))
		{
			return false;
		}
		while (Index < Format.Len() && FString(TEXT("-+ #0")).Contains(FString::Chr(Format[Index])))
		{
			++Index;
		}
		while (Index < Format.Len() && FChar::IsDigit(Format[Index]))
		{
			++Index;
		}
		if (Index < Format.Len() && Format[Index] == TEXT('.'))
		{
			++Index;
			while (Index < Format.Len() && FChar::IsDigit(Format[Index]))
			{
				++Index;
			}
		}
		if (Index != Format.Len() - 1)
		{
			return false;
		}
		const TCHAR Conversion = Format[Index];
		bOutInteger = FString(TEXT("diouxX")).Contains(FString::Chr(Conversion), ESearchCase::CaseSensitive);
		return bOutInteger || FString(TEXT("fFeEgGaA")).Contains(FString::Chr(Conversion), ESearchCase::CaseSensitive);
	}

	FString FormatNumber(const FString& Format, bool bInteger, double Real, int64 Integer)
	{
		char Buffer[128];
		if (bInteger)
		{
			// The value goes through as long long, so the conversion gets the ll length.
			const std::string Narrow = UECompatToUtf8(Format.LeftChop(1) + TEXT("ll") + Format.Right(1));
			std::snprintf(Buffer, sizeof(Buffer), Narrow.c_str(), (long long)Integer);
		}
		else
		{
			std::snprintf(Buffer, sizeof(Buffer), UECompatToUtf8(Format).c_str(), Real);
		}
		return UECompatFromUtf8(Buffer);
	}
}

// Reads one template; with an expression it writes the caption, without one it only checks the
// template against the class.
class FSimulatedCaptionTemplate
{
public:
	FSimulatedCaptionTemplate(const FSimulatedEditor& InEditor, const FSimulatedType& InClass, const FSimulatedObject* InExpression, const FString& InTemplate)
		: Editor(InEditor)
		, Class(InClass)
		, Expression(InExpression)
		, Template(InTemplate)
	{
	}

	bool Run(FString& OutText)
	{
		OutText.Reset();
		return Read(false, true, OutText) && (Position == Template.Len() || Fail(TEXT("has an unmatched '}'")));
	}

	const FString& GetError() const { return Error; }

private:
	bool Fail(const FString& Message)
	{
		if (Error.IsEmpty())
		{
			Error = FString::Printf(TEXT("Caption '%s' %s."), *Template, *Message);
		}
		return false;
	}

	// Text up to the end of the template, or in a branch up to its "|" or "}". bWrite false skips
	// a branch that is not taken (still checked).
	bool Read(bool bInBranch, bool bWrite, FString& Out)
	{
		while (Position < Template.Len())
		{
			const TCHAR Character = Template[Position];
			if (Character == TEXT('}') || (bInBranch && Character == TEXT('|')))
			{
				return true;
			}
			if (Character != TEXT('{'))
			{
				if (bWrite)
				{
					Out += Character;
				}
				++Position;
				continue;
			}
			++Position;
			if (!ReadPlaceholder(bWrite, Out))
			{
				return false;
			}
		}
		return !bInBranch || Fail(TEXT("has an unclosed '{'"));
	}

	bool ReadPlaceholder(bool bWrite, FString& Out)
	{
		const int32 PathStart = Position;
		while (Position < Template.Len() && Template[Position] != TEXT('}') && Template[Position] != TEXT(':') && Template[Position] != TEXT('?'))
		{
			++Position;
		}
		const FString Path = Template.Mid(PathStart, Position - PathStart);
		const FSimulatedProperty* Property = nullptr;
		const FSimulatedValue* Value = nullptr;
		if (!ResolvePath(Path, Property, Value))
		{
			return false;
		}
		if (Position >= Template.Len())
		{
			return Fail(TEXT("has an unclosed '{'"));
		}
		if (Template[Position] == TEXT('}'))
		{
			++Position;
			if (bWrite && Value)
			{
				FString ValueText;
				Editor.ExportValueText(*Property, *Value, false, ValueText, Expression);
				Out += ValueText;
			}
			return true;
		}
		if (Template[Position] == TEXT(':'))
		{
			const int32 FormatStart = ++Position;
			while (Position < Template.Len() && Template[Position] != TEXT('}'))
			{
				++Position;
			}
			const FString Format = Template.Mid(FormatStart, Position - FormatStart);
			bool bInteger = false;
			if (Position >= Template.Len() || !IsSingleConversion(Format, bInteger) || !IsNumeric(*Property))
			{
				return Fail(FString::Printf(TEXT("formats %s with '%s', which is not one printf conversion of a number"), *Path, *Format));
			}
			++Position;
			if (bWrite && Value)
			{
				const double Real = Property->Type == ESimulatedPropertyType::Float || Property->Type == ESimulatedPropertyType::Double ? Value->Real : (double)GetInteger(*Property, *Value);
				const int64 Integer = Property->Type == ESimulatedPropertyType::Float || Property->Type == ESimulatedPropertyType::Double ? (int64)Value->Real : GetInteger(*Property, *Value);
				Out += FormatNumber(Format, bInteger, Real, Integer);
			}
			return true;
		}
		// {Path?Then|Else}
		++Position;
		const bool bTrue = Value && IsTrue(*Property, *Value);
		if (!Read(true, bWrite && bTrue, Out))
		{
			return false;
		}
		if (Template[Position] == TEXT('|'))
		{
			++Position;
			if (!Read(true, bWrite && !bTrue, Out))
			{
				return false;
			}
		}
		if (Template[Position] != TEXT('}'))
		{
			return Fail(TEXT("has a second '|' in one placeholder"));
		}
		++Position;
		return true;
	}

	// Property or Property.Field...; the value only when there is an expression.
	bool ResolvePath(const FString& Path, const FSimulatedProperty*& OutProperty, const FSimulatedValue*& OutValue)
	{
		TArray<FString> Parts;
		Path.ParseIntoArray(Parts, TEXT("."), false);
		const FSimulatedType* Owner = &Class;
		const std::vector<FSimulatedValue>* Values = Expression ? &Expression->Values : nullptr;
		OutProperty = nullptr;
		OutValue = nullptr;
		for (const FString& Part : Parts)
		{
			const int32 Index = Owner ? Owner->FindPropertyIndex(Part) : INDEX_NONE;
			if (Index == INDEX_NONE)
			{
				return Fail(FString::Printf(TEXT("names %s, which %s does not have"), *Path, *Class.Name));
			}
			OutProperty = Owner->AllProperties[(size_t)Index];
			OutValue = Values && (size_t)Index < Values->size() ? &(*Values)[(size_t)Index] : nullptr;
			Owner = OutProperty->Type == ESimulatedPropertyType::Struct ? OutProperty->TypeObject : nullptr;
			Values = OutValue ? &OutValue->Items : nullptr;
		}
		return OutProperty != nullptr || Fail(TEXT("has an empty placeholder"));
	}

	static bool IsNumeric(const FSimulatedProperty& Property)
	{
		switch (Property.Type)
		{
		case ESimulatedPropertyType::Bool:
		case ESimulatedPropertyType::Byte:
		case ESimulatedPropertyType::Int:
		case ESimulatedPropertyType::Int64:
		case ESimulatedPropertyType::UInt16:
		case ESimulatedPropertyType::Float:
		case ESimulatedPropertyType::Double:
		case ESimulatedPropertyType::ByteEnum:
		case ESimulatedPropertyType::Enum:
			return true;
		default:
			return false;
		}
	}

	static int64 GetInteger(const FSimulatedProperty& Property, const FSimulatedValue& Value)
	{
		return Property.Type == ESimulatedPropertyType::Bool ? (Value.Bool ? 1 : 0) : Value.Integer;
	}

	static bool IsTrue(const FSimulatedProperty& Property, const FSimulatedValue& Value)
	{
		switch (Property.Type)
		{
		case ESimulatedPropertyType::Bool:
			return Value.Bool;
		case ESimulatedPropertyType::Float:
		case ESimulatedPropertyType::Double:
			return Value.Real != 0.0;
		case ESimulatedPropertyType::String:
		case ESimulatedPropertyType::Name:
		case ESimulatedPropertyType::Text:
			return !Value.Text.IsEmpty();
		case ESimulatedPropertyType::Object:
		case ESimulatedPropertyType::Class:
		case ESimulatedPropertyType::SoftObject:
			return Value.Object != nullptr || !Value.Text.IsEmpty();
		case ESimulatedPropertyType::Array:
			return !Value.Items.empty();
		case ESimulatedPropertyType::Struct:
			return true;
		default:
			return Value.Integer != 0;
		}
	}

	const FSimulatedEditor& Editor;
	const FSimulatedType& Class;
	const FSimulatedObject* Expression;
	const FString& Template;
	int32 Position = 0;
	FString Error;
};

FString FSimulatedEditor::FormatCaption(const FSimulatedObject& Expression, const FString& Template) const
{
	FString Caption;
	FSimulatedCaptionTemplate(*this, *Expression.Class, &Expression, Template).Run(Caption);
	return Caption;
}

bool FSimulatedEditor::ValidateCaption(const FSimulatedType& Class, const FString& Template, FString& OutError) const
{
	FString Ignored;
	FSimulatedCaptionTemplate Checker(*this, Class, nullptr, Template);
	if (!Checker.Run(Ignored))
	{
		OutError = Checker.GetError();
		return false;
	}
	return true;
}
