#include "SimulatedEditor.h"

#include "SimulatedBlueprint.h"
#include "SimulatedWorld.h"

#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"
#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"
#include "Misc/Paths.h"

#include <algorithm>

namespace
{
	// Splits "/Script/Engine.Actor" into the package "/Script/Engine" and the name "Actor".
	bool SplitTypePath(const FString& Path, FString& OutPackage, FString& OutName)
	{
		int32 DotIndex = INDEX_NONE;
		if (!Path.StartsWith(TEXT("/")) || !Path.FindLastChar(TEXT('.'), DotIndex) || DotIndex <= 1 || DotIndex == Path.Len() - 1)
		{
			return false;
		}
		OutPackage = Path.Left(DotIndex);
		OutName = Path.Mid(DotIndex + 1);
		return !OutPackage.Contains(TEXT(".")) && !OutName.Contains(TEXT(":"));
	}

	// Decimal or 0x hexadecimal.
	int64 ParseEnumValue(const FString& Text)
	{
		if (!Text.StartsWith(TEXT("0x")))
		{
			return FCString::Atoi64(*Text);
		}
		int64 Value = 0;
		for (int32 Index = 2; Index < Text.Len(); ++Index)
		{
			const int32 DigitValue = GetHexDigitValue(Text[Index]);
			if (DigitValue < 0)
			{
				break;
			}
			Value = Value * 16 + DigitValue;
		}
		return Value;
	}
}

FString FSimulatedObject::GetPathName() const
{
	if (!Outer)
	{
		return Name;
	}
	// Objects directly inside a top-level asset are separated by ":", deeper ones by ".".
	const TCHAR* Separator = (Outer->Outer && !Outer->Outer->Outer) ? TEXT(":") : TEXT(".");
	return Outer->GetPathName() + Separator + Name;
}

const FSimulatedObject* FSimulatedObject::GetOutermost() const
{
	const FSimulatedObject* Current = this;
	while (Current->Outer)
	{
		Current = Current->Outer;
	}
	return Current;
}

bool FSimulatedType::IsChildOf(const FSimulatedType* Base) const
{
	for (const FSimulatedType* Current = this; Current; Current = Current->Super)
	{
		if (Current == Base)
		{
			return true;
		}
	}
	return false;
}

const FSimulatedFunction* FSimulatedType::FindFunction(const FString& FunctionName) const
{
	for (const FSimulatedType* Type = this; Type != nullptr; Type = Type->Super)
	{
		for (const std::shared_ptr<FSimulatedFunction>& Function : Type->Functions)
		{
			if (Function->Name.Equals(FunctionName, ESearchCase::IgnoreCase))
			{
				return Function.get();
			}
		}
	}
	return nullptr;
}

int32 FSimulatedType::FindPropertyIndex(const FString& PropertyName) const
{
	// Property names are FNames: case-insensitive.
	for (int32 Index = 0; Index < (int32)AllProperties.size(); ++Index)
	{
		if (AllProperties[(size_t)Index]->Name.Equals(PropertyName, ESearchCase::IgnoreCase))
		{
			return Index;
		}
	}
	return INDEX_NONE;
}

const TCHAR* FSimulatedType::GetPrefixCpp() const
{
	switch (Kind)
	{
	case ESimulatedTypeKind::Struct:
		return TEXT("F");
	case ESimulatedTypeKind::Enum:
		return TEXT("");
	default:
		break;
	}
	for (const FSimulatedType* Current = this; Current; Current = Current->Super)
	{
		if (Current->GetPathName() == TEXT("/Script/Engine.Actor"))
		{
			return TEXT("A");
		}
	}
	return TEXT("U");
}

void FSimulatedType::RebuildPropertyList()
{
	AllProperties.clear();
	std::vector<const FSimulatedType*> Chain;
	for (const FSimulatedType* Current = this; Current; Current = Current->Super)
	{
		Chain.push_back(Current);
		for (const std::shared_ptr<FSimulatedProperty>& Property : Current->OwnProperties)
		{
			AllProperties.push_back(Property.get());
		}
	}
	// The same fields, the outermost super type's block first.
	TextFieldOrder.clear();
	std::vector<size_t> BlockStarts;
	size_t Start = 0;
	for (const FSimulatedType* Current : Chain)
	{
		BlockStarts.push_back(Start);
		Start += Current->OwnProperties.size();
	}
	for (size_t ChainIndex = Chain.size(); ChainIndex-- > 0;)
	{
		for (size_t Index = 0; Index < Chain[ChainIndex]->OwnProperties.size(); ++Index)
		{
			TextFieldOrder.push_back(BlockStarts[ChainIndex] + Index);
		}
	}
}

FSimulatedEditor::FSimulatedEditor()
	: Blueprints(std::make_unique<FSimulatedBlueprints>(*this))
	, World(std::make_unique<FSimulatedWorld>(*this))
{
	FString Ignored;
	ObjectClass = AddType(ESimulatedTypeKind::Class, TEXT("/Script/CoreUObject.Object"), nullptr, Ignored);
	FSimulatedType* FieldClass = AddType(ESimulatedTypeKind::Class, TEXT("/Script/CoreUObject.Field"), nullptr, Ignored);
	FSimulatedType* StructClass = AddType(ESimulatedTypeKind::Class, TEXT("/Script/CoreUObject.Struct"), nullptr, Ignored);
	ClassClass = AddType(ESimulatedTypeKind::Class, TEXT("/Script/CoreUObject.Class"), nullptr, Ignored);
	ScriptStructClass = AddType(ESimulatedTypeKind::Class, TEXT("/Script/CoreUObject.ScriptStruct"), nullptr, Ignored);
	EnumClass = AddType(ESimulatedTypeKind::Class, TEXT("/Script/CoreUObject.Enum"), nullptr, Ignored);
	PackageClass = AddType(ESimulatedTypeKind::Class, TEXT("/Script/CoreUObject.Package"), nullptr, Ignored);
	FieldClass->Super = ObjectClass;
	StructClass->Super = FieldClass;
	ClassClass->Super = StructClass;
	ScriptStructClass->Super = StructClass;
	EnumClass->Super = FieldClass;
	PackageClass->Super = ObjectClass;
	for (FSimulatedType* Core : {ObjectClass, FieldClass, StructClass, ClassClass, ScriptStructClass, EnumClass, PackageClass})
	{
		Core->Class = ClassClass;
		Core->ClassFlags = ZorvekMCPBridgeClassFlags::Native;
		Core->RebuildPropertyList();
	}
	for (const std::unique_ptr<FSimulatedObject>& Object : Objects)
	{
		if (Object->IsPackage())
		{
			Object->Class = PackageClass;
		}
	}
}

FSimulatedEditor::~FSimulatedEditor() = default;

std::u16string FSimulatedEditor::MakeKey(const FString& Text)
{
	return Text.ToLower().GetStorage();
}

void FSimulatedEditor::IndexObject(FSimulatedObject* Object)
{
	ObjectsByPath[MakeKey(Object->GetPathName())] = Object;
	if (FSimulatedType* Type = dynamic_cast<FSimulatedType*>(Object))
	{
		TypesByShortName.emplace(MakeKey(Type->Name), Type);
	}
}

FSimulatedObject* FSimulatedEditor::FindOrCreatePackage(const FString& PackageName)
{
	if (FSimulatedObject* Existing = FindObject(PackageName))
	{
		return Existing->IsPackage() ? Existing : nullptr;
	}
	std::unique_ptr<FSimulatedObject> Package = std::make_unique<FSimulatedObject>();
	Package->Name = PackageName;
	Package->Class = PackageClass;
	FSimulatedObject* Result = Package.get();
	Objects.push_back(std::move(Package));
	IndexObject(Result);
	return Result;
}

FSimulatedType* FSimulatedEditor::AddType(ESimulatedTypeKind Kind, const FString& Path, FSimulatedType* MetaClass, FString& OutError)
{
	FString PackageName;
	FString TypeName;
	const bool bPathForm = SplitTypePath(Path, PackageName, TypeName);
	if (!bPathForm)
	{
		OutError = FString::Printf(TEXT("'%s' is not a type path such as /Script/Engine.Actor."), *Path);
		return nullptr;
	}
	if (FindObject(Path))
	{
		OutError = FString::Printf(TEXT("A type or object named %s already exists."), *Path);
		return nullptr;
	}
	std::unique_ptr<FSimulatedType> Type = std::make_unique<FSimulatedType>();
	Type->Kind = Kind;
	Type->Name = TypeName;
	Type->Class = MetaClass;
	Type->Outer = FindOrCreatePackage(PackageName);
	if (!Type->Outer)
	{
		OutError = FString::Printf(TEXT("%s is an object, not a package."), *PackageName);
		return nullptr;
	}
	FSimulatedType* Result = Type.get();
	Objects.push_back(std::move(Type));
	IndexObject(Result);
	return Result;
}

bool FSimulatedEditor::FindSuperType(ESimulatedTypeKind Kind, const FString& SuperPath, const FString& Path, FSimulatedType*& OutSuper, FString& OutError) const
{
	OutSuper = nullptr;
	if (SuperPath.IsEmpty())
	{
		return true;
	}
	OutSuper = FindTypeByPath(SuperPath);
	if (!OutSuper || OutSuper->Kind != Kind)
	{
		OutError = FString::Printf(TEXT("Super %s %s of %s is not defined (define it first)."), Kind == ESimulatedTypeKind::Class ? TEXT("class") : TEXT("struct"), *SuperPath, *Path);
		return false;
	}
	return true;
}

FSimulatedType* FSimulatedEditor::AddClass(const FString& Path, const FString& SuperPath, uint32 ClassFlags, FString& OutError)
{
	FSimulatedType* Super = nullptr;
	if (!FindSuperType(ESimulatedTypeKind::Class, SuperPath, Path, Super, OutError))
	{
		return nullptr;
	}
	// Classes of Blueprints are objects of BlueprintGeneratedClass; native ones of Class.
	FSimulatedType* MetaClass = ClassClass;
	if (!Path.StartsWith(TEXT("/Script/")))
	{
		if (FSimulatedType* Generated = FindTypeByPath(TEXT("/Script/Engine.BlueprintGeneratedClass")))
		{
			MetaClass = Generated;
		}
		ClassFlags |= ZorvekMCPBridgeClassFlags::CompiledFromBlueprint;
	}
	else
	{
		ClassFlags |= ZorvekMCPBridgeClassFlags::Native;
	}
	FSimulatedType* Class = AddType(ESimulatedTypeKind::Class, Path, MetaClass, OutError);
	if (Class)
	{
		Class->Super = Super ? Super : (Class == ObjectClass ? nullptr : ObjectClass);
		Class->ClassFlags = ClassFlags;
		Class->RebuildPropertyList();
	}
	return Class;
}

FSimulatedType* FSimulatedEditor::AddStruct(const FString& Path, const FString& SuperPath, FString& OutError)
{
	FSimulatedType* Super = nullptr;
	if (!FindSuperType(ESimulatedTypeKind::Struct, SuperPath, Path, Super, OutError))
	{
		return nullptr;
	}
	FSimulatedType* Struct = AddType(ESimulatedTypeKind::Struct, Path, ScriptStructClass, OutError);
	if (Struct)
	{
		Struct->Super = Super;
		Struct->RebuildPropertyList();
	}
	return Struct;
}

FSimulatedType* FSimulatedEditor::AddEnum(const FString& Path, const TArray<FString>& Names, bool bEnumClass, FString& OutError)
{
	if (Names.IsEmpty())
	{
		OutError = FString::Printf(TEXT("Enum %s needs at least one name."), *Path);
		return nullptr;
	}
	FSimulatedType* Enum = AddType(ESimulatedTypeKind::Enum, Path, EnumClass, OutError);
	if (Enum)
	{
		Enum->bEnumClass = bEnumClass;
		for (int32 Index = 0; Index < Names.Num(); ++Index)
		{
			// "Name=Value" gives an explicit value (flag enums); otherwise values count up.
			FString Name = Names[Index];
			FString NamePart;
			FString ValueText;
			int64 Value = Enum->EnumValues.IsEmpty() ? 0 : Enum->EnumValues.Last() + 1;
			if (Names[Index].Split(TEXT("="), &NamePart, &ValueText))
			{
				Name = NamePart;
				Value = ParseEnumValue(ValueText.TrimStartAndEnd());
			}
			Enum->EnumNames.Add(Name.TrimStartAndEnd());
			Enum->EnumValues.Add(Value);
		}
	}
	return Enum;
}

FSimulatedObject* FSimulatedEditor::CreateObject(FSimulatedType* Class, FSimulatedObject* Outer, const FString& Name, FString& OutError)
{
	if (!Class || Class->Kind != ESimulatedTypeKind::Class || !Outer)
	{
		OutError = TEXT("An object needs a class and an outer.");
		return nullptr;
	}
	if (Name.IsEmpty() || Name.Contains(TEXT(".")) || Name.Contains(TEXT(":")) || Name.Contains(TEXT("/")))
	{
		OutError = FString::Printf(TEXT("'%s' is not a valid object name."), *Name);
		return nullptr;
	}
	std::unique_ptr<FSimulatedObject> Object = std::make_unique<FSimulatedObject>();
	Object->Name = Name;
	Object->Class = Class;
	Object->Outer = Outer;
	if (FindObject(Object->GetPathName()))
	{
		OutError = FString::Printf(TEXT("An object %s already exists."), *Object->GetPathName());
		return nullptr;
	}
	Object->Values.reserve(Class->AllProperties.size());
	for (const FSimulatedProperty* Property : Class->AllProperties)
	{
		Object->Values.push_back(MakeDefaultValue(*Property));
	}
	FSimulatedObject* Result = Object.get();
	Objects.push_back(std::move(Object));
	IndexObject(Result);
	for (size_t Index = 0; Index < ClassConstructors.size(); ++Index)
	{
		if (Class->IsChildOf(ClassConstructors[Index].first))
		{
			ClassConstructors[Index].second(*Result);
		}
	}
	return Result;
}

void FSimulatedEditor::SetClassConstructor(const FSimulatedType* Class, TFunction<void(FSimulatedObject&)> Constructor)
{
	ClassConstructors.emplace_back(Class, MoveTemp(Constructor));
}

bool FSimulatedEditor::RenameObject(FSimulatedObject* Object, FSimulatedObject* NewOuter, const FString& NewName, FString& OutError)
{
	if (!Object || !NewOuter || Object->IsPackage())
	{
		OutError = TEXT("Only an object inside a package can be renamed.");
		return false;
	}
	FSimulatedObject* const OldOuter = Object->Outer;
	const FString OldName = Object->Name;
	Object->Outer = NewOuter;
	Object->Name = NewName;
	const FString NewPath = Object->GetPathName();
	Object->Outer = OldOuter;
	Object->Name = OldName;
	if (FindObject(NewPath))
	{
		OutError = FString::Printf(TEXT("An object named %s already exists in %s."), *NewName, *NewOuter->GetPathName());
		return false;
	}
	// The object and everything inside it change their path names.
	std::vector<FSimulatedObject*> Moved;
	for (const std::unique_ptr<FSimulatedObject>& Candidate : Objects)
	{
		for (const FSimulatedObject* Outer = Candidate.get(); Outer; Outer = Outer->Outer)
		{
			if (Outer == Object)
			{
				Moved.push_back(Candidate.get());
				break;
			}
		}
	}
	for (FSimulatedObject* Entry : Moved)
	{
		ObjectsByPath.erase(MakeKey(Entry->GetPathName()));
	}
	Object->Outer = NewOuter;
	Object->Name = NewName;
	for (FSimulatedObject* Entry : Moved)
	{
		IndexObject(Entry);
	}
	return true;
}

FSimulatedValue FSimulatedEditor::MakeDefaultValue(const FSimulatedProperty& Property) const
{
	if (Property.Default)
	{
		return *Property.Default;
	}
	FSimulatedValue Value;
	if (Property.Type == ESimulatedPropertyType::Struct && Property.TypeObject)
	{
		for (const FSimulatedProperty* Field : Property.TypeObject->AllProperties)
		{
			Value.Items.push_back(MakeDefaultValue(*Field));
		}
	}
	return Value;
}

FSimulatedValue FSimulatedEditor::MakeZeroValue(const FSimulatedProperty& Property) const
{
	FSimulatedValue Value;
	if (Property.Type == ESimulatedPropertyType::Struct && Property.TypeObject)
	{
		for (const FSimulatedProperty* Field : Property.TypeObject->AllProperties)
		{
			Value.Items.push_back(MakeZeroValue(*Field));
		}
	}
	return Value;
}

bool FSimulatedEditor::SetPropertyText(FSimulatedObject* Object, const FString& PropertyName, const FString& Text, FString& OutError)
{
	if (!Object || !Object->Class)
	{
		OutError = TEXT("No object to set a property on.");
		return false;
	}
	const int32 Index = Object->Class->FindPropertyIndex(PropertyName);
	if (Index == INDEX_NONE)
	{
		OutError = FString::Printf(TEXT("%s has no property %s."), *Object->Class->Name, *PropertyName);
		return false;
	}
	return ImportValueText(*Object->Class->AllProperties[(size_t)Index], Object->Values[(size_t)Index], Text, OutError, Object);
}

FZorvekMCPBridgeAssetData FSimulatedEditor::MakeAssetData(const FSimulatedObject* Asset) const
{
	const FSimulatedObject* Package = Asset->GetOutermost();
	FZorvekMCPBridgeAssetData Entry;
	Entry.PackageName = Package->Name;
	int32 SlashIndex = INDEX_NONE;
	Package->Name.FindLastChar(TEXT('/'), SlashIndex);
	Entry.PackagePath = Package->Name.Left(SlashIndex);
	Entry.AssetName = Asset->Name;
	Entry.AssetClassPath = Asset->Class->GetPathName();
	Entry.ObjectPath = Asset->GetPathName();
	// Registry-searchable properties become tags named after the property, as GetAssetRegistryTags
	// writes them.
	for (size_t Index = 0; Index < Asset->Class->AllProperties.size(); ++Index)
	{
		const FSimulatedProperty& Property = *Asset->Class->AllProperties[Index];
		if ((Property.Flags & ZorvekMCPBridgePropertyFlags::AssetRegistrySearchable) != 0)
		{
			FString Text;
			ExportValueText(Property, Asset->Values[Index], false, Text);
			Entry.Tags.Add({Property.Name, Text});
		}
	}
	return Entry;
}

void FSimulatedEditor::RegisterAsset(FSimulatedObject* Asset, const TArray<FZorvekMCPBridgeAssetTag>& ExtraTags)
{
	FZorvekMCPBridgeAssetData Entry = MakeAssetData(Asset);
	for (const FZorvekMCPBridgeAssetTag& Tag : ExtraTags)
	{
		Entry.Tags.Add(Tag);
	}
	AddRegistryEntry(Entry);
}

void FSimulatedEditor::ForEachObject(TFunctionRef<void(FSimulatedObject*)> Callback) const
{
	for (const std::unique_ptr<FSimulatedObject>& Object : Objects)
	{
		Callback(Object.get());
	}
}

FString FSimulatedEditor::GetSavedPackagesDirectory() const
{
	return SavedPackagesDirectory.IsEmpty() ? FPaths::ProjectSavedDir() + TEXT("SimulatedContent/") : SavedPackagesDirectory;
}

std::vector<const FSimulatedObject*> FSimulatedEditor::GetUnregisteredLoadedAssets() const
{
	std::vector<const FSimulatedObject*> Assets;
	for (const std::unique_ptr<FSimulatedObject>& Object : Objects)
	{
		// Top-level objects of content packages; a package that failed to load holds nothing. Class
		// default objects (Default__BP_Door_C beside a Blueprint) are no assets (UObject::IsAsset).
		if (!Object->Outer || !Object->Outer->IsPackage() || !Object->bLoadable || dynamic_cast<const FSimulatedType*>(Object.get()) || Object->Outer->Name.StartsWith(TEXT("/Script/"))
			|| Object->Name.StartsWith(TEXT("Default__"), ESearchCase::CaseSensitive))
		{
			continue;
		}
		bool bRegistered = false;
		for (const FZorvekMCPBridgeAssetData* Entry : FindRegistryEntries(Object->Outer->Name))
		{
			bRegistered = bRegistered || Entry->ObjectPath.Equals(Object->GetPathName(), ESearchCase::IgnoreCase);
		}
		if (!bRegistered)
		{
			Assets.push_back(Object.get());
		}
	}
	return Assets;
}

FSimulatedObject* FSimulatedEditor::FindObjectByShortName(const FString& Name, const FSimulatedType* Class) const
{
	for (const std::unique_ptr<FSimulatedObject>& Object : Objects)
	{
		if (!Object->IsPackage() && Object->Name.Equals(Name, ESearchCase::IgnoreCase) && (!Class || Object->Class->IsChildOf(Class)))
		{
			return Object.get();
		}
	}
	return nullptr;
}

void FSimulatedEditor::AddRegistryEntry(const FZorvekMCPBridgeAssetData& Entry)
{
	RegistryByPackage.emplace(MakeKey(Entry.PackageName), Registry.size());
	Registry.push_back(Entry);
}

FSimulatedObject* FSimulatedEditor::FindObject(const FString& ObjectPath) const
{
	const auto Found = ObjectsByPath.find(MakeKey(ObjectPath));
	return Found != ObjectsByPath.end() ? Found->second : nullptr;
}

FSimulatedType* FSimulatedEditor::FindTypeByPath(const FString& Path) const
{
	return dynamic_cast<FSimulatedType*>(FindObject(Path));
}

FSimulatedType* FSimulatedEditor::FindType(ESimulatedTypeKind Kind, const FString& PathOrShortName) const
{
	if (PathOrShortName.Contains(TEXT("/")))
	{
		FSimulatedType* Type = FindTypeByPath(PathOrShortName);
		return Type && Type->Kind == Kind ? Type : nullptr;
	}
	FSimulatedType* Found = nullptr;
	const auto Range = TypesByShortName.equal_range(MakeKey(PathOrShortName));
	for (auto It = Range.first; It != Range.second; ++It)
	{
		FSimulatedType* Candidate = It->second;
		if (Candidate->Kind != Kind)
		{
			continue;
		}
		const bool bNative = Candidate->GetOutermost()->Name.StartsWith(TEXT("/Script/"));
		if (!Found || (bNative && !Found->GetOutermost()->Name.StartsWith(TEXT("/Script/"))))
		{
			Found = Candidate;
		}
	}
	return Found;
}

TArray<const FZorvekMCPBridgeAssetData*> FSimulatedEditor::FindRegistryEntries(const FString& PackageName) const
{
	std::vector<size_t> Indices;
	const auto Range = RegistryByPackage.equal_range(MakeKey(PackageName));
	for (auto It = Range.first; It != Range.second; ++It)
	{
		Indices.push_back(It->second);
	}
	std::sort(Indices.begin(), Indices.end());
	TArray<const FZorvekMCPBridgeAssetData*> Entries;
	for (size_t Index : Indices)
	{
		Entries.Add(&Registry[Index]);
	}
	return Entries;
}

std::shared_ptr<FSimulatedProperty> FSimulatedEditor::MakeProperty(const FString& Name, const FString& TypeText, uint64 Flags, FString& OutError) const
{
	std::function<std::shared_ptr<FSimulatedProperty>(const FString&)> ParseType = [this, &ParseType, &OutError](const FString& Text) -> std::shared_ptr<FSimulatedProperty>
	{
		struct FSimpleType
		{
			const TCHAR* Word;
			ESimulatedPropertyType Type;
		};
		static const FSimpleType SimpleTypes[] = {
			{TEXT("bool"), ESimulatedPropertyType::Bool},
			{TEXT("uint8"), ESimulatedPropertyType::Byte},
			{TEXT("int32"), ESimulatedPropertyType::Int},
			{TEXT("int64"), ESimulatedPropertyType::Int64},
			{TEXT("uint16"), ESimulatedPropertyType::UInt16},
			{TEXT("float"), ESimulatedPropertyType::Float},
			{TEXT("double"), ESimulatedPropertyType::Double},
			{TEXT("FString"), ESimulatedPropertyType::String},
			{TEXT("FName"), ESimulatedPropertyType::Name},
			{TEXT("FText"), ESimulatedPropertyType::Text}};
		std::shared_ptr<FSimulatedProperty> Property = std::make_shared<FSimulatedProperty>();
		for (const FSimpleType& Simple : SimpleTypes)
		{
			if (Text.Equals(Simple.Word, ESearchCase::CaseSensitive))
			{
				Property->Type = Simple.Type;
				return Property;
			}
		}
		FString Kind;
		FString Argument;
		if (!Text.Split(TEXT(":"), &Kind, &Argument) || Argument.IsEmpty())
		{
			OutError = FString::Printf(TEXT("Unknown property type '%s'."), *Text);
			return nullptr;
		}
		if (Kind == TEXT("array"))
		{
			Property->Type = ESimulatedPropertyType::Array;
			Property->Inner = ParseType(Argument);
			if (!Property->Inner)
			{
				return nullptr;
			}
			if (Property->Inner->Type == ESimulatedPropertyType::Array)
			{
				OutError = FString::Printf(TEXT("Arrays of arrays are not reflected ('%s')."), *Text);
				return nullptr;
			}
			return Property;
		}
		struct FReferenceType
		{
			const TCHAR* Word;
			ESimulatedPropertyType Type;
			ESimulatedTypeKind TargetKind;
		};
		static const FReferenceType ReferenceTypes[] = {
			{TEXT("enum"), ESimulatedPropertyType::Enum, ESimulatedTypeKind::Enum},
			{TEXT("struct"), ESimulatedPropertyType::Struct, ESimulatedTypeKind::Struct},
			{TEXT("object"), ESimulatedPropertyType::Object, ESimulatedTypeKind::Class},
			{TEXT("softobject"), ESimulatedPropertyType::SoftObject, ESimulatedTypeKind::Class},
			{TEXT("class"), ESimulatedPropertyType::Class, ESimulatedTypeKind::Class}};
		for (const FReferenceType& Reference : ReferenceTypes)
		{
			if (Kind == Reference.Word)
			{
				FSimulatedType* Target = FindTypeByPath(Argument);
				if (!Target || Target->Kind != Reference.TargetKind)
				{
					OutError = FString::Printf(TEXT("Property type '%s' names %s, which is not defined (define it first)."), *Text, *Argument);
					return nullptr;
				}
				Property->Type = Reference.Type;
				Property->TypeObject = Target;
				if (Reference.Type == ESimulatedPropertyType::Enum && !Target->bEnumClass)
				{
					Property->Type = ESimulatedPropertyType::ByteEnum;
				}
				return Property;
			}
		}
		OutError = FString::Printf(TEXT("Unknown property type '%s'."), *Text);
		return nullptr;
	};

	std::shared_ptr<FSimulatedProperty> Property = ParseType(TypeText);
	if (Property)
	{
		Property->Name = Name;
		Property->Flags = Flags;
	}
	return Property;
}

FSimulatedProperty* FSimulatedEditor::AddProperty(FSimulatedType* Owner, const FString& Name, const FString& TypeText, uint64 Flags, FString& OutError)
{
	if (!Owner || Owner->Kind == ESimulatedTypeKind::Enum)
	{
		OutError = TEXT("Properties belong to classes and structs.");
		return nullptr;
	}
	if (Name.IsEmpty())
	{
		OutError = FString::Printf(TEXT("A property of %s has no name."), *Owner->GetPathName());
		return nullptr;
	}
	for (const std::shared_ptr<FSimulatedProperty>& Existing : Owner->OwnProperties)
	{
		if (Existing->Name.Equals(Name, ESearchCase::IgnoreCase))
		{
			OutError = FString::Printf(TEXT("%s declares %s twice."), *Owner->GetPathName(), *Name);
			return nullptr;
		}
	}
	std::shared_ptr<FSimulatedProperty> Property = MakeProperty(Name, TypeText, Flags, OutError);
	if (!Property)
	{
		OutError = FString::Printf(TEXT("%s.%s: %s"), *Owner->GetPathName(), *Name, *OutError);
		return nullptr;
	}
	if (Property->Type == ESimulatedPropertyType::Struct && Property->TypeObject->IsChildOf(Owner))
	{
		OutError = FString::Printf(TEXT("Struct %s cannot contain itself."), *Owner->GetPathName());
		return nullptr;
	}
	Owner->OwnProperties.push_back(Property);
	Owner->RebuildPropertyList();
	return Property.get();
}
