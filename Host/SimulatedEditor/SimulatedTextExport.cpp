// Property values as text, written the way the engine's ExportTextItem writes them with no
// default value and port flags 0: True/False, integers, "%f" for floats and doubles, enumerator
// names, Class'Path' references (a default subobject of the exporting object by name), bare soft
// paths, FText in its NSLOCTEXT/INVTEXT/LOCTABLE forms, "(Field=Value,...)" for structs (fields
// equal to their default left out, atomic structs whole), "(a,b)" for arrays and nothing for an
// empty one. Inside structs and arrays strings, names and references are quoted.
#include "SimulatedEditor.h"

#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"

namespace
{
	// Strings, names and text arguments in quotes, with the escapes the engine writes.
	FString QuoteText(const FString& Text)
	{
		FString Quoted = TEXT("\"");
		for (TCHAR Character : Text)
		{
			if (Character == TEXT('"') || Character == TEXT('\\'))
			{
				Quoted += TEXT('\\');
				Quoted += Character;
			}
			else if (Character == TEXT('\n'))
			{
				Quoted += TEXT("\\n");
			}
			else
			{
				Quoted += Character;
			}
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

	FString GetSoftPath(const FSimulatedValue& Value)
	{
		return Value.Object ? Value.Object->GetPathName() : Value.Text;
	}
}

// One export: the exporting object stays the same down through struct fields and array elements.
class FSimulatedTextExporter
{
public:
	FSimulatedTextExporter(const FSimulatedEditor& InEditor, const FSimulatedObject* InOwner)
		: Editor(InEditor)
		, Owner(InOwner)
	{
	}

	// Defaults is the value compared with inside structs (null: zero), as the engine passes its
	// default pointer down.
	void Append(const FSimulatedProperty& Property, const FSimulatedValue& Value, const FSimulatedValue* Defaults, bool bDelimited, FString& Out) const
	{
		switch (Property.Type)
		{
		case ESimulatedPropertyType::Bool:
			Out += Value.Bool ? TEXT("True") : TEXT("False");
			return;
		case ESimulatedPropertyType::Byte:
		case ESimulatedPropertyType::Int:
		case ESimulatedPropertyType::Int64:
		case ESimulatedPropertyType::UInt16:
			Out += FString::Printf(TEXT("%lld"), (long long)Value.Integer);
			return;
		case ESimulatedPropertyType::Float:
		case ESimulatedPropertyType::Double:
			Out += FString::Printf(TEXT("%f"), Value.Real);
			return;
		case ESimulatedPropertyType::String:
			Out += bDelimited ? QuoteText(Value.Text) : Value.Text;
			return;
		case ESimulatedPropertyType::Name:
			// None is "None" at top level and an empty quoted name inside containers.
			Out += bDelimited ? QuoteText(Value.Text) : (Value.Text.IsEmpty() ? FString(TEXT("None")) : Value.Text);
			return;
		case ESimulatedPropertyType::Text:
			AppendText(Value, bDelimited, Out);
			return;
		case ESimulatedPropertyType::ByteEnum:
		case ESimulatedPropertyType::Enum:
		{
			const int32 Index = Property.TypeObject->EnumValues.Find(Value.Integer);
			Out += Index != INDEX_NONE ? Property.TypeObject->EnumNames[Index] : FString(TEXT("(INVALID)"));
			return;
		}
		case ESimulatedPropertyType::Struct:
			AppendStruct(*Property.TypeObject, Value, Defaults, Out);
			return;
		case ESimulatedPropertyType::Object:
		case ESimulatedPropertyType::Class:
			AppendReference(Value, bDelimited, Out);
			return;
		case ESimulatedPropertyType::SoftObject:
		{
			// The path alone, without the class the hard reference names.
			const FString Path = GetSoftPath(Value).IsEmpty() ? FString(TEXT("None")) : GetSoftPath(Value);
			Out += bDelimited ? QuoteText(Path) : Path;
			return;
		}
		case ESimulatedPropertyType::Array:
			AppendArray(Property, Value, Defaults, Out);
			return;
		}
	}

private:
	static void AppendText(const FSimulatedValue& Value, bool bDelimited, FString& Out)
	{
		switch (Value.TextIdentity)
		{
		case ESimulatedTextIdentity::Localized:
			Out += FString::Printf(TEXT("NSLOCTEXT(%s, %s, %s)"), *QuoteText(Value.TextNamespace), *QuoteText(Value.TextKey), *QuoteText(Value.Text));
			return;
		case ESimulatedTextIdentity::CultureInvariant:
			Out += FString::Printf(TEXT("INVTEXT(%s)"), *QuoteText(Value.Text));
			return;
		case ESimulatedTextIdentity::StringTable:
			Out += FString::Printf(TEXT("LOCTABLE(%s, %s)"), *QuoteText(Value.TextNamespace), *QuoteText(Value.TextKey));
			return;
		case ESimulatedTextIdentity::None:
			Out += bDelimited ? QuoteText(Value.Text) : Value.Text;
			return;
		}
	}

	void AppendReference(const FSimulatedValue& Value, bool bDelimited, FString& Out) const
	{
		if (!Value.Object)
		{
			Out += TEXT("None");
			return;
		}
		FString Text;
		if (Owner && Value.Object->bDefaultSubobject && Value.Object->Outer == Owner)
		{
			Text = Value.Object->Name;
		}
		else
		{
			Text = Value.Object->Class->GetPathName() + TEXT("'") + Value.Object->GetPathName() + TEXT("'");
		}
		Out += bDelimited ? TEXT("\"") + Text + TEXT("\"") : Text;
	}

	void AppendStruct(const FSimulatedType& Struct, const FSimulatedValue& Value, const FSimulatedValue* Defaults, FString& Out) const
	{
		switch (Struct.StructTextForm)
		{
		case ESimulatedStructTextForm::Guid:
			Out += FormatGuid(Value);
			return;
		case ESimulatedStructTextForm::Verbatim:
			Out += Value.Text;
			return;
		case ESimulatedStructTextForm::Atomic:
			// The engine compares an atomic struct with itself, so every field is written.
			Defaults = &Value;
			break;
		case ESimulatedStructTextForm::Fields:
			break;
		}
		int32 Written = 0;
		for (const size_t Index : Struct.TextFieldOrder)
		{
			const FSimulatedProperty& Field = *Struct.AllProperties[Index];
			// ShouldPort with port flags 0 drops transient and deprecated fields.
			if (Index >= Value.Items.size() || !Field.bExportable || (Field.Flags & (ZorvekMCPBridgePropertyFlags::Transient | ZorvekMCPBridgePropertyFlags::Deprecated)) != 0)
			{
				continue;
			}
			const FSimulatedValue& FieldValue = Value.Items[Index];
			const FSimulatedValue* FieldDefault = Defaults && Index < Defaults->Items.size() ? &Defaults->Items[Index] : nullptr;
			// ExportText_InContainer: written when compared with itself or when it differs.
			if (FieldDefault != &FieldValue && Editor.IsIdenticalValue(Field, FieldValue, FieldDefault))
			{
				continue;
			}
			Out += Written == 0 ? TEXT("(") : TEXT(",");
			Out += Field.Name + TEXT("=");
			Append(Field, FieldValue, FieldDefault, true, Out);
			++Written;
		}
		Out += Written == 0 ? TEXT("()") : TEXT(")");
	}

	void AppendArray(const FSimulatedProperty& Property, const FSimulatedValue& Value, const FSimulatedValue* Defaults, FString& Out) const
	{
		const FSimulatedProperty& Inner = *Property.Inner;
		// Struct elements are always compared with the struct's C++ default.
		const bool bStructElements = Inner.Type == ESimulatedPropertyType::Struct;
		const FSimulatedValue StructDefault = bStructElements ? Editor.MakeDefaultValue(Inner) : FSimulatedValue();
		for (size_t Index = 0; Index < Value.Items.size(); ++Index)
		{
			Out += Index == 0 ? TEXT("(") : TEXT(",");
			const FSimulatedValue* ElementDefault = bStructElements ? &StructDefault : (Defaults && Index < Defaults->Items.size() ? &Defaults->Items[Index] : nullptr);
			Append(Inner, Value.Items[Index], ElementDefault, true, Out);
		}
		if (!Value.Items.empty())
		{
			Out += TEXT(")");
		}
	}

	const FSimulatedEditor& Editor;
	const FSimulatedObject* Owner;
};

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

bool FSimulatedEditor::ExportValueText(const FSimulatedProperty& Property, const FSimulatedValue& Value, bool bDelimited, FString& OutText, const FSimulatedObject* Owner) const
{
	OutText.Reset();
	if (!Property.bExportable)
	{
		return false;
	}
	FSimulatedTextExporter(*this, Owner).Append(Property, Value, nullptr, bDelimited, OutText);
	return true;
}

bool FSimulatedEditor::IsIdenticalValue(const FSimulatedProperty& Property, const FSimulatedValue& A, const FSimulatedValue* B) const
{
	switch (Property.Type)
	{
	case ESimulatedPropertyType::Bool:
		return A.Bool == (B && B->Bool);
	case ESimulatedPropertyType::Byte:
	case ESimulatedPropertyType::Int:
	case ESimulatedPropertyType::Int64:
	case ESimulatedPropertyType::UInt16:
	case ESimulatedPropertyType::ByteEnum:
	case ESimulatedPropertyType::Enum:
		return A.Integer == (B ? B->Integer : 0);
	case ESimulatedPropertyType::Float:
	case ESimulatedPropertyType::Double:
		// Exact comparison: -0.0 equals 0.0, 1e-9 does not.
		return A.Real == (B ? B->Real : 0.0);
	case ESimulatedPropertyType::String:
	case ESimulatedPropertyType::Name:
		// FString and FName equality ignore case.
		return B ? A.Text.Equals(B->Text, ESearchCase::IgnoreCase) : A.Text.IsEmpty();
	case ESimulatedPropertyType::Text:
		if (!B)
		{
			// Against nothing, a text counts as default when its display string is empty; a string
			// table reference always shows something.
			return A.TextIdentity != ESimulatedTextIdentity::StringTable && A.Text.IsEmpty();
		}
		return A.TextIdentity == B->TextIdentity && A.Text.Equals(B->Text, ESearchCase::CaseSensitive) && A.TextNamespace.Equals(B->TextNamespace, ESearchCase::CaseSensitive)
			&& A.TextKey.Equals(B->TextKey, ESearchCase::CaseSensitive);
	case ESimulatedPropertyType::Struct:
	{
		// A struct is never identical to nothing (CompareScriptStruct with a null side).
		if (!B)
		{
			return false;
		}
		if (Property.TypeObject->StructTextForm == ESimulatedStructTextForm::Verbatim)
		{
			return A.Text.Equals(B->Text, ESearchCase::CaseSensitive);
		}
		const std::vector<const FSimulatedProperty*>& Fields = Property.TypeObject->AllProperties;
		for (size_t Index = 0; Index < Fields.size() && Index < A.Items.size() && Index < B->Items.size(); ++Index)
		{
			if (!IsIdenticalValue(*Fields[Index], A.Items[Index], &B->Items[Index]))
			{
				return false;
			}
		}
		return true;
	}
	case ESimulatedPropertyType::Object:
	case ESimulatedPropertyType::Class:
		return A.Object == (B ? B->Object : nullptr);
	case ESimulatedPropertyType::SoftObject:
		return B ? GetSoftPath(A).Equals(GetSoftPath(*B), ESearchCase::IgnoreCase) : GetSoftPath(A).IsEmpty();
	case ESimulatedPropertyType::Array:
	{
		if (!B)
		{
			return A.Items.empty();
		}
		if (A.Items.size() != B->Items.size())
		{
			return false;
		}
		for (size_t Index = 0; Index < A.Items.size(); ++Index)
		{
			if (!IsIdenticalValue(*Property.Inner, A.Items[Index], &B->Items[Index]))
			{
				return false;
			}
		}
		return true;
	}
	}
	return false;
}
