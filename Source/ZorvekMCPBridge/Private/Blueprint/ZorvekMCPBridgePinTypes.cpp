#include "Blueprint/ZorvekMCPBridgePinTypes.h"

#include "Dom/JsonValue.h"

const FName FZorvekMCPBridgePinCategories::PC_Exec(TEXT("exec"));
const FName FZorvekMCPBridgePinCategories::PC_Boolean(TEXT("bool"));
const FName FZorvekMCPBridgePinCategories::PC_Int(TEXT("int"));
const FName FZorvekMCPBridgePinCategories::PC_Real(TEXT("real"));
const FName FZorvekMCPBridgePinCategories::PC_Float(TEXT("float"));
const FName FZorvekMCPBridgePinCategories::PC_Double(TEXT("double"));
const FName FZorvekMCPBridgePinCategories::PC_String(TEXT("string"));
const FName FZorvekMCPBridgePinCategories::PC_Name(TEXT("name"));
const FName FZorvekMCPBridgePinCategories::PC_Text(TEXT("text"));
const FName FZorvekMCPBridgePinCategories::PC_Struct(TEXT("struct"));
const FName FZorvekMCPBridgePinCategories::PC_Object(TEXT("object"));
const FName FZorvekMCPBridgePinCategories::PC_Class(TEXT("class"));

const TCHAR* const ZorvekMCPBridgePinTypes::DefaultAllowedClassPath = TEXT("/Script/Engine.Actor");

namespace
{
	// What a base type word stands for. The struct words refer to the engine's base structures,
	// which are native to CoreUObject and always exist, so they need no lookup.
	enum class EBaseTypeReference : uint8
	{
		None,
		Struct,
		AllowedClass
	};

	struct FBaseTypeWord
	{
		const TCHAR* Word;
		const FName* Category;
		const FName* SubCategory;
		EBaseTypeReference Reference;
		const TCHAR* StructPath;
		const TCHAR* StructName;
		const TCHAR* NormalizedWord;
	};

	// Tried in this order; the first match wins.
	const FBaseTypeWord BaseTypeWords[] =
	{
		{TEXT("bool"), &FZorvekMCPBridgePinCategories::PC_Boolean, nullptr, EBaseTypeReference::None, nullptr, nullptr, TEXT("bool")},
		{TEXT("boolean"), &FZorvekMCPBridgePinCategories::PC_Boolean, nullptr, EBaseTypeReference::None, nullptr, nullptr, TEXT("bool")},
		{TEXT("int"), &FZorvekMCPBridgePinCategories::PC_Int, nullptr, EBaseTypeReference::None, nullptr, nullptr, TEXT("int")},
		{TEXT("integer"), &FZorvekMCPBridgePinCategories::PC_Int, nullptr, EBaseTypeReference::None, nullptr, nullptr, TEXT("int")},
		// "float" is a real of float precision on purpose, not a double.
		{TEXT("float"), &FZorvekMCPBridgePinCategories::PC_Real, &FZorvekMCPBridgePinCategories::PC_Float, EBaseTypeReference::None, nullptr, nullptr, TEXT("float")},
		{TEXT("real"), &FZorvekMCPBridgePinCategories::PC_Real, &FZorvekMCPBridgePinCategories::PC_Float, EBaseTypeReference::None, nullptr, nullptr, TEXT("float")},
		{TEXT("string"), &FZorvekMCPBridgePinCategories::PC_String, nullptr, EBaseTypeReference::None, nullptr, nullptr, TEXT("string")},
		{TEXT("name"), &FZorvekMCPBridgePinCategories::PC_Name, nullptr, EBaseTypeReference::None, nullptr, nullptr, TEXT("name")},
		{TEXT("text"), &FZorvekMCPBridgePinCategories::PC_Text, nullptr, EBaseTypeReference::None, nullptr, nullptr, TEXT("text")},
		{TEXT("vector"), &FZorvekMCPBridgePinCategories::PC_Struct, nullptr, EBaseTypeReference::Struct, TEXT("/Script/CoreUObject.Vector"), TEXT("Vector"), TEXT("vector")},
		{TEXT("rotator"), &FZorvekMCPBridgePinCategories::PC_Struct, nullptr, EBaseTypeReference::Struct, TEXT("/Script/CoreUObject.Rotator"), TEXT("Rotator"), TEXT("rotator")},
		{TEXT("transform"), &FZorvekMCPBridgePinCategories::PC_Struct, nullptr, EBaseTypeReference::Struct, TEXT("/Script/CoreUObject.Transform"), TEXT("Transform"), TEXT("transform")},
		{TEXT("object"), &FZorvekMCPBridgePinCategories::PC_Object, nullptr, EBaseTypeReference::AllowedClass, nullptr, nullptr, TEXT("object")},
		{TEXT("objectreference"), &FZorvekMCPBridgePinCategories::PC_Object, nullptr, EBaseTypeReference::AllowedClass, nullptr, nullptr, TEXT("object")},
		{TEXT("class"), &FZorvekMCPBridgePinCategories::PC_Class, nullptr, EBaseTypeReference::AllowedClass, nullptr, nullptr, TEXT("class")},
		{TEXT("classreference"), &FZorvekMCPBridgePinCategories::PC_Class, nullptr, EBaseTypeReference::AllowedClass, nullptr, nullptr, TEXT("class")},
	};

	FString MakeUnsupportedTypeMessage(const FString& TypeText)
	{
		return FString::Printf(TEXT("Unsupported Blueprint variable type '%s'. Supported types: bool, int, float, string, name, text, vector, rotator, transform, object, class, arrays like float[] or array<float>, sets like set<name>, and maps like map<name,string>."), *TypeText);
	}

	FString MakeNestedContainerMessage(const FString& TypeText)
	{
		return FString::Printf(TEXT("Nested Blueprint containers are not supported for variable type '%s'."), *TypeText);
	}

	// Drops the separators people put into multi-word type names, so "Object Reference",
	// "object_reference", "object-reference" and "class (reference)" all read as one word.
	FString CleanBaseWord(const FString& ElementText)
	{
		FString Cleaned;
		Cleaned.Reserve(ElementText.Len());
		for (const TCHAR Character : ElementText)
		{
			if (Character != TEXT(' ') && Character != TEXT('_') && Character != TEXT('-') && Character != TEXT('(') && Character != TEXT(')'))
			{
				Cleaned.AppendChar(Character);
			}
		}
		return Cleaned;
	}

	// Maps are the only recursive form. A map inside a map is refused anyway; the limit only keeps
	// absurdly deep texts from exhausting the stack.
	constexpr int32 MaxMapDepth = 8;

	bool ParseVariableType(const IZorvekMCPBridgeTypeLookup& TypeLookup, const FString& TypeText, const FString& AllowedClassPath, int32 MapDepth,
		FZorvekMCPBridgePinType& OutPinType, FString& OutTypeString, FString& OutError);

	bool ParseMapType(const IZorvekMCPBridgeTypeLookup& TypeLookup, const FString& TypeText, const FString& InnerText, const FString& AllowedClassPath, int32 MapDepth,
		FZorvekMCPBridgePinType& OutPinType, FString& OutTypeString, FString& OutError)
	{
		if (MapDepth >= MaxMapDepth)
		{
			OutError = MakeNestedContainerMessage(TypeText);
			return false;
		}

		FString KeyText;
		FString ValueText;
		if (!ZorvekMCPBridgePinTypes::SplitMapKeyValue(InnerText, KeyText, ValueText))
		{
			OutError = FString::Printf(TEXT("Unsupported Blueprint map variable type '%s'. Use map<key,value>, for example map<name,string>."), *TypeText);
			return false;
		}

		FZorvekMCPBridgePinType KeyType;
		FString KeyTypeString;
		if (!ParseVariableType(TypeLookup, KeyText, AllowedClassPath, MapDepth + 1, KeyType, KeyTypeString, OutError))
		{
			return false;
		}
		FZorvekMCPBridgePinType ValueType;
		FString ValueTypeString;
		if (!ParseVariableType(TypeLookup, ValueText, AllowedClassPath, MapDepth + 1, ValueType, ValueTypeString, OutError))
		{
			return false;
		}
		// The engine's maps hold terminal types only.
		if (KeyType.IsContainer() || ValueType.IsContainer())
		{
			OutError = MakeNestedContainerMessage(TypeText);
			return false;
		}

		FZorvekMCPBridgePinType MapType = KeyType;
		MapType.ContainerType = EZorvekMCPBridgePinContainerType::Map;
		MapType.PinValueType.TerminalCategory = ValueType.PinCategory;
		MapType.PinValueType.TerminalSubCategory = ValueType.PinSubCategory;
		MapType.PinValueType.TerminalSubCategoryObject = ValueType.PinSubCategoryObject;
		OutPinType = MapType;
		OutTypeString = FString::Printf(TEXT("map<%s,%s>"), *KeyTypeString, *ValueTypeString);
		return true;
	}

	bool ParseVariableType(const IZorvekMCPBridgeTypeLookup& TypeLookup, const FString& TypeText, const FString& AllowedClassPath, int32 MapDepth,
		FZorvekMCPBridgePinType& OutPinType, FString& OutTypeString, FString& OutError)
	{
		const FString Trimmed = TypeText.TrimStartAndEnd();
		const FString Lower = Trimmed.ToLower();

		FString MapInner;
		if (ZorvekMCPBridgePinTypes::SplitContainerInner(Trimmed, TEXT("map<"), MapInner))
		{
			return ParseMapType(TypeLookup, TypeText, MapInner, AllowedClassPath, MapDepth, OutPinType, OutTypeString, OutError);
		}

		// Only map keys and values are parsed again: "array<array<int>>" reaches the word table
		// with the element "array<int>" and is refused there as an unknown word.
		EZorvekMCPBridgePinContainerType Container = EZorvekMCPBridgePinContainerType::None;
		FString ElementText;
		if (ZorvekMCPBridgePinTypes::SplitContainerInner(Lower, TEXT("array<"), ElementText))
		{
			Container = EZorvekMCPBridgePinContainerType::Array;
		}
		else if (Lower.EndsWith(TEXT("[]"), ESearchCase::CaseSensitive))
		{
			ElementText = Lower.LeftChop(2).TrimStartAndEnd();
			Container = EZorvekMCPBridgePinContainerType::Array;
		}
		else if (ZorvekMCPBridgePinTypes::SplitContainerInner(Lower, TEXT("set<"), ElementText))
		{
			Container = EZorvekMCPBridgePinContainerType::Set;
		}
		else
		{
			ElementText = Lower;
		}

		const FString BaseWord = CleanBaseWord(ElementText);
		const FBaseTypeWord* Match = nullptr;
		for (const FBaseTypeWord& Candidate : BaseTypeWords)
		{
			if (BaseWord.Equals(Candidate.Word, ESearchCase::IgnoreCase))
			{
				Match = &Candidate;
				break;
			}
		}
		if (Match == nullptr)
		{
			OutError = MakeUnsupportedTypeMessage(TypeText);
			return false;
		}

		FZorvekMCPBridgePinType PinType;
		PinType.PinCategory = *Match->Category;
		if (Match->SubCategory != nullptr)
		{
			PinType.PinSubCategory = *Match->SubCategory;
		}
		if (Match->Reference == EBaseTypeReference::Struct)
		{
			PinType.PinSubCategoryObject = FZorvekMCPBridgeTypeIdentity(Match->StructPath, Match->StructName);
		}
		else if (Match->Reference == EBaseTypeReference::AllowedClass)
		{
			const FString ClassPath = AllowedClassPath.IsEmpty() ? FString(ZorvekMCPBridgePinTypes::DefaultAllowedClassPath) : AllowedClassPath;
			FZorvekMCPBridgeTypeIdentity AllowedClass;
			if (!TypeLookup.LoadClass(ClassPath, AllowedClass) || !AllowedClass.IsSet())
			{
				OutError = PinType.PinCategory == FZorvekMCPBridgePinCategories::PC_Class
					? FString::Printf(TEXT("Could not load allowable class variable class: %s"), *ClassPath)
					: FString::Printf(TEXT("Could not load allowable object variable class: %s"), *ClassPath);
				return false;
			}
			PinType.PinSubCategoryObject = AllowedClass;
		}

		FString TypeString = Match->NormalizedWord;
		if (Container == EZorvekMCPBridgePinContainerType::Array)
		{
			// Both array spellings normalise to the short form, while sets keep the long one.
			TypeString += TEXT("[]");
		}
		else if (Container == EZorvekMCPBridgePinContainerType::Set)
		{
			TypeString = FString::Printf(TEXT("set<%s>"), *TypeString);
		}
		PinType.ContainerType = Container;

		OutPinType = PinType;
		OutTypeString = TypeString;
		return true;
	}

	// The keys every pin-like object shares, after its name (and direction).
	void AddPinTypeKeys(FJsonObject& Json, const FZorvekMCPBridgePinType& PinType)
	{
		Json.SetStringField(TEXT("pin_category"), PinType.PinCategory.ToString());
		Json.SetStringField(TEXT("pin_subcategory"), PinType.PinSubCategory.ToString());
		Json.SetStringField(TEXT("pin_subcategory_object"), PinType.PinSubCategoryObject.PathName);
		Json.SetStringField(TEXT("container_type"), ZorvekMCPBridgePinTypes::GetContainerTypeWord(PinType.ContainerType));
		Json.SetStringField(TEXT("type_string"), ZorvekMCPBridgePinTypes::DescribePinType(PinType));
	}

	// A pin of a node (with its direction) or a declared pin (without).
	TSharedPtr<FJsonObject> MakePinObject(const FName& PinName, const EZorvekMCPBridgePinDirection* Direction, const FZorvekMCPBridgePinType& PinType, const FString& DefaultValue)
	{
		TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
		Json->SetStringField(TEXT("name"), PinName.ToString());
		if (Direction != nullptr)
		{
			Json->SetStringField(TEXT("direction"), *Direction == EZorvekMCPBridgePinDirection::Output ? TEXT("output") : TEXT("input"));
		}
		AddPinTypeKeys(*Json, PinType);
		Json->SetObjectField(TEXT("type"), ZorvekMCPBridgePinTypes::MakePinTypeJson(PinType));
		Json->SetStringField(TEXT("default_value"), DefaultValue);
		return Json;
	}
}

bool ZorvekMCPBridgePinTypes::SplitContainerInner(const FString& Text, const TCHAR* Prefix, FString& OutInner)
{
	const int32 PrefixLength = FString(Prefix).Len();
	if (Text.Len() <= PrefixLength || !Text.StartsWith(Prefix, ESearchCase::IgnoreCase) || !Text.EndsWith(TEXT(">"), ESearchCase::CaseSensitive))
	{
		return false;
	}
	OutInner = Text.Mid(PrefixLength, Text.Len() - PrefixLength - 1).TrimStartAndEnd();
	return true;
}

bool ZorvekMCPBridgePinTypes::SplitMapKeyValue(const FString& InnerText, FString& OutKey, FString& OutValue)
{
	int32 Depth = 0;
	for (int32 Index = 0; Index < InnerText.Len(); ++Index)
	{
		const TCHAR Character = InnerText[Index];
		if (Character == TEXT('<'))
		{
			++Depth;
		}
		else if (Character == TEXT('>'))
		{
			--Depth;
		}
		else if (Character == TEXT(',') && Depth == 0)
		{
			const FString Key = InnerText.Left(Index).TrimStartAndEnd();
			const FString Value = InnerText.Mid(Index + 1).TrimStartAndEnd();
			if (Key.IsEmpty() || Value.IsEmpty())
			{
				return false;
			}
			OutKey = Key;
			OutValue = Value;
			return true;
		}
	}
	return false;
}

bool ZorvekMCPBridgePinTypes::ParseBlueprintVariableType(const IZorvekMCPBridgeTypeLookup& TypeLookup, const FString& TypeText, const FString& AllowedClassPath,
	FZorvekMCPBridgePinType& OutPinType, FString& OutTypeString, FString& OutError)
{
	return ParseVariableType(TypeLookup, TypeText, AllowedClassPath, 0, OutPinType, OutTypeString, OutError);
}

bool ZorvekMCPBridgePinTypes::ParseParamSpecArray(const IZorvekMCPBridgeTypeLookup& TypeLookup, const TSharedPtr<FJsonObject>& Request, const FString& FieldName,
	TArray<FBlueprintParamSpec>& OutSpecs, FString& OutError)
{
	const TArray<TSharedPtr<FJsonValue>>* Entries = nullptr;
	if (!Request.IsValid() || !Request->TryGetArrayField(FieldName, Entries) || Entries == nullptr)
	{
		OutSpecs.Reset();
		return true;
	}

	TArray<FBlueprintParamSpec> Specs;
	TSet<FName> SeenNames;
	for (const TSharedPtr<FJsonValue>& Entry : *Entries)
	{
		const TSharedPtr<FJsonObject>* EntryObject = nullptr;
		if (!Entry.IsValid() || !Entry->TryGetObject(EntryObject) || EntryObject == nullptr || !EntryObject->IsValid())
		{
			OutError = FString::Printf(TEXT("%s entries must be objects with Name and Type."), *FieldName);
			return false;
		}

		FString NameText;
		FString TypeText;
		if (!(*EntryObject)->TryGetStringField(TEXT("Name"), NameText) || !(*EntryObject)->TryGetStringField(TEXT("Type"), TypeText)
			|| NameText.IsEmpty() || TypeText.IsEmpty())
		{
			OutError = FString::Printf(TEXT("%s entries require Name and Type."), *FieldName);
			return false;
		}

		// Pin names are engine names: "A" and "a" are the same pin.
		const FName PinName(NameText);
		if (SeenNames.Contains(PinName))
		{
			OutError = FString::Printf(TEXT("Duplicate %s pin name: %s"), *FieldName, *NameText);
			return false;
		}
		SeenNames.Add(PinName);

		FString ObjectClassPath;
		(*EntryObject)->TryGetStringField(TEXT("ObjectClassPath"), ObjectClassPath);

		FBlueprintParamSpec Spec;
		Spec.Name = PinName;
		if (!ParseBlueprintVariableType(TypeLookup, TypeText, ObjectClassPath, Spec.PinType, Spec.TypeString, OutError))
		{
			return false;
		}
		Specs.Add(Spec);
	}

	OutSpecs = MoveTemp(Specs);
	return true;
}

FString ZorvekMCPBridgePinTypes::DescribeTerminalType(const FName& Category, const FName& SubCategory, const FZorvekMCPBridgeTypeIdentity& SubCategoryObject)
{
	if (SubCategoryObject.IsSet())
	{
		return SubCategoryObject.Name;
	}
	if (Category == FZorvekMCPBridgePinCategories::PC_Real && !SubCategory.IsNone())
	{
		return SubCategory.ToString();
	}
	return Category.ToString();
}

FString ZorvekMCPBridgePinTypes::DescribePinType(const FZorvekMCPBridgePinType& PinType)
{
	const FString BaseText = DescribeTerminalType(PinType.PinCategory, PinType.PinSubCategory, PinType.PinSubCategoryObject);
	switch (PinType.ContainerType)
	{
	case EZorvekMCPBridgePinContainerType::Array:
		return FString::Printf(TEXT("array<%s>"), *BaseText);
	case EZorvekMCPBridgePinContainerType::Set:
		return FString::Printf(TEXT("set<%s>"), *BaseText);
	case EZorvekMCPBridgePinContainerType::Map:
	{
		const FZorvekMCPBridgeTerminalType& ValueType = PinType.PinValueType;
		const FString ValueText = DescribeTerminalType(ValueType.TerminalCategory, ValueType.TerminalSubCategory, ValueType.TerminalSubCategoryObject);
		return FString::Printf(TEXT("map<%s,%s>"), *BaseText, *ValueText);
	}
	default:
		return BaseText;
	}
}

FString ZorvekMCPBridgePinTypes::GetContainerTypeWord(EZorvekMCPBridgePinContainerType ContainerType)
{
	switch (ContainerType)
	{
	case EZorvekMCPBridgePinContainerType::None:
		return TEXT("none");
	case EZorvekMCPBridgePinContainerType::Array:
		return TEXT("array");
	case EZorvekMCPBridgePinContainerType::Set:
		return TEXT("set");
	case EZorvekMCPBridgePinContainerType::Map:
		return TEXT("map");
	default:
		return TEXT("unknown");
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePinTypes::MakeTerminalTypeJson(const FName& Category, const FName& SubCategory, const FZorvekMCPBridgeTypeIdentity& SubCategoryObject)
{
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetStringField(TEXT("pin_category"), Category.ToString());
	// An unset sub-category prints as the engine prints the empty name ("None").
	Json->SetStringField(TEXT("pin_subcategory"), SubCategory.ToString());
	Json->SetStringField(TEXT("pin_subcategory_object"), SubCategoryObject.PathName);
	Json->SetStringField(TEXT("display_name"), DescribeTerminalType(Category, SubCategory, SubCategoryObject));
	return Json;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePinTypes::MakeTerminalTypeJson(const FZorvekMCPBridgeTerminalType& TerminalType)
{
	return MakeTerminalTypeJson(TerminalType.TerminalCategory, TerminalType.TerminalSubCategory, TerminalType.TerminalSubCategoryObject);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePinTypes::MakePinTypeJson(const FZorvekMCPBridgePinType& PinType)
{
	TSharedPtr<FJsonObject> Json = MakeTerminalTypeJson(PinType.PinCategory, PinType.PinSubCategory, PinType.PinSubCategoryObject);
	Json->SetStringField(TEXT("container_type"), GetContainerTypeWord(PinType.ContainerType));
	Json->SetStringField(TEXT("type_string"), DescribePinType(PinType));
	Json->SetBoolField(TEXT("is_array"), PinType.IsArray());
	Json->SetBoolField(TEXT("is_set"), PinType.IsSet());
	Json->SetBoolField(TEXT("is_map"), PinType.IsMap());
	if (PinType.IsArray() || PinType.IsSet())
	{
		Json->SetObjectField(TEXT("element_type"), MakeTerminalTypeJson(PinType.PinCategory, PinType.PinSubCategory, PinType.PinSubCategoryObject));
	}
	else if (PinType.IsMap())
	{
		Json->SetObjectField(TEXT("key_type"), MakeTerminalTypeJson(PinType.PinCategory, PinType.PinSubCategory, PinType.PinSubCategoryObject));
		Json->SetObjectField(TEXT("value_type"), MakeTerminalTypeJson(PinType.PinValueType));
	}
	return Json;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePinTypes::MakePinJson(const FZorvekMCPBridgePinSnapshot& Pin)
{
	return MakePinObject(Pin.PinName, &Pin.Direction, Pin.PinType, Pin.DefaultValue);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePinTypes::MakeUserPinJson(const FZorvekMCPBridgeUserPinInfo& UserPin)
{
	// A declared pin's direction follows from the node it sits on, so it is not written.
	return MakePinObject(UserPin.PinName, nullptr, UserPin.PinType, UserPin.PinDefaultValue);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePinTypes::MakeParamSpecJson(const FBlueprintParamSpec& Spec)
{
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetStringField(TEXT("name"), Spec.Name.ToString());
	// Reserves the second place for "type"; the pin type object below replaces the word there.
	Json->SetStringField(TEXT("type"), Spec.TypeString);
	AddPinTypeKeys(*Json, Spec.PinType);
	Json->SetObjectField(TEXT("type"), MakePinTypeJson(Spec.PinType));
	return Json;
}

TArray<TSharedPtr<FJsonValue>> ZorvekMCPBridgePinTypes::MakeParamSpecJson(const TArray<FBlueprintParamSpec>& Specs)
{
	TArray<TSharedPtr<FJsonValue>> Values;
	for (const FBlueprintParamSpec& Spec : Specs)
	{
		Values.Add(MakeShared<FJsonValueObject>(MakeParamSpecJson(Spec)));
	}
	return Values;
}
