#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "Engine/Blueprint.h"
#include "Extensions/Editor/ZorvekMCPBridgeVessaExtensionRegistryObject.h"
#include "Extensions/ZorvekMCPBridgeVessaExtension.h"
#include "JsonObjectConverter.h"
#include "ScopedTransaction.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/EnumProperty.h"
#include "UObject/Package.h"
#include "UObject/StrProperty.h"
#include "UObject/TextProperty.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/UObjectHash.h"
#include "UObject/UnrealType.h"

static_assert(ZorvekMCPBridgeParameterFlags::Parm == CPF_Parm && ZorvekMCPBridgeParameterFlags::OutParm == CPF_OutParm
	&& ZorvekMCPBridgeParameterFlags::ReturnParm == CPF_ReturnParm && ZorvekMCPBridgeParameterFlags::ReferenceParm == CPF_ReferenceParm,
	"The portable parameter flags must be the engine's.");

namespace
{
	// Struct fields are described this many levels deep.
	constexpr int32 EngineFunctionStructDepth = 4;

	FZorvekMCPBridgeFieldInfo EngineDescribeProperty(const FProperty* Property, int32 Depth)
	{
		FZorvekMCPBridgeFieldInfo Info;
		// Not in the reference notes; check against the engine (FField::GetAuthoredName).
		Info.Name = Property->GetAuthoredName();
		Info.Flags = (uint64)Property->GetPropertyFlags();
		if (const FArrayProperty* Array = CastField<FArrayProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Array;
			Info.Inner.Add(EngineDescribeProperty(Array->Inner, Depth));
		}
		else if (CastField<FStrProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Str;
		}
		else if (CastField<FNameProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Name;
		}
		else if (CastField<FTextProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Text;
		}
		else if (CastField<FIntProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Int;
		}
		else if (CastField<FInt8Property>(Property) || CastField<FInt16Property>(Property) || CastField<FInt64Property>(Property)
			|| CastField<FUInt16Property>(Property) || CastField<FUInt32Property>(Property) || CastField<FUInt64Property>(Property))
		{
			Info.FieldClass = CastField<FInt64Property>(Property) ? EZorvekMCPBridgeFieldClass::Int64 : EZorvekMCPBridgeFieldClass::Other;
		}
		else if (CastField<FFloatProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Float;
		}
		else if (CastField<FDoubleProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Double;
		}
		else if (CastField<FBoolProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Bool;
		}
		else if (const FStructProperty* Struct = CastField<FStructProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Struct;
			Info.StructName = Struct->Struct->GetName();
			Info.StructPath = Struct->Struct->GetPathName();
			if (Depth < EngineFunctionStructDepth)
			{
				for (TFieldIterator<FProperty> It(Struct->Struct); It; ++It)
				{
					Info.StructFields.Add(EngineDescribeProperty(*It, Depth + 1));
				}
			}
		}
		else if (CastField<FEnumProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Enum;
		}
		else if (const FByteProperty* Byte = CastField<FByteProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Byte;
			Info.bByteHasEnum = Byte->Enum != nullptr;
		}
		else if (CastField<FObjectProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Object;
		}
		else if (CastField<FObjectPropertyBase>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::OtherObjectReference;
		}
		else if (CastField<FSetProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Set;
		}
		else if (CastField<FMapProperty>(Property))
		{
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Map;
		}
		return Info;
	}

	FZorvekMCPBridgeFunctionInfo EngineDescribeFunction(const UFunction* Function, const TArray<FString>& MetaDataKeys)
	{
		FZorvekMCPBridgeFunctionInfo Info;
		Info.Name = Function->GetName();
		Info.FunctionFlags = (uint32)Function->FunctionFlags;
		for (const FString& Key : MetaDataKeys)
		{
			if (Function->HasMetaData(*Key))
			{
				Info.MetaData.Add(Key, Function->GetMetaData(*Key));
			}
		}
		// Parameters come first; a Blueprint function's locals follow them.
		for (TFieldIterator<FProperty> It(Function); It && It->HasAnyPropertyFlags(CPF_Parm); ++It)
		{
			Info.Parameters.Add(EngineDescribeProperty(*It, 0));
		}
		return Info;
	}

	UClass* EngineFindClass(const FString& ClassPath)
	{
		return FindObject<UClass>(nullptr, ClassPath);
	}

	// The whole function frame, zeroed (a Blueprint function's locals follow its parameters), with
	// every parameter initialised as the engine's own calls by name do it.
	class FEngineParameterBlock : public IZorvekMCPBridgeParameterBlock
	{
	public:
		explicit FEngineParameterBlock(UFunction* InFunction)
			: Function(InFunction)
		{
			Memory.SetNumZeroed(Function->GetStructureSize());
			for (TFieldIterator<FProperty> It(Function); It && It->HasAnyPropertyFlags(CPF_Parm); ++It)
			{
				It->InitializeValue_InContainer(Memory.GetData());
				Parameters.Add(*It);
			}
		}

		~FEngineParameterBlock() override
		{
			for (FProperty* Parameter : Parameters)
			{
				Parameter->DestroyValue_InContainer(Memory.GetData());
			}
		}

		int32 GetParameterCount() const override { return Parameters.Num(); }

		bool ImportJsonObject(int32 Index, const TSharedPtr<FJsonObject>& Object) override
		{
			const FStructProperty* Struct = CastField<FStructProperty>(Parameters[Index]);
			return Struct && Object.IsValid() && FJsonObjectConverter::JsonObjectToUStruct(Object.ToSharedRef(), Struct->Struct, ValuePtr(Index));
		}

		bool ImportJsonValue(int32 Index, const TSharedPtr<FJsonValue>& Value) override
		{
			return FJsonObjectConverter::JsonValueToUProperty(Value, Parameters[Index], ValuePtr(Index));
		}

		bool SetStringValue(int32 Index, const FString& Text) override
		{
			if (CastField<FStrProperty>(Parameters[Index]))
			{
				FStrProperty::SetPropertyValue(ValuePtr(Index), Text);
				return true;
			}
			if (CastField<FNameProperty>(Parameters[Index]))
			{
				FNameProperty::SetPropertyValue(ValuePtr(Index), FName(*Text));
				return true;
			}
			return false;
		}

		FString GetStringValue(int32 Index) const override
		{
			const FProperty* Parameter = Parameters[Index];
			if (CastField<FStrProperty>(Parameter))
			{
				return FStrProperty::GetPropertyValue(ValuePtr(Index));
			}
			if (CastField<FNameProperty>(Parameter))
			{
				return FNameProperty::GetPropertyValue(ValuePtr(Index)).ToString();
			}
			if (CastField<FTextProperty>(Parameter))
			{
				return FTextProperty::GetPropertyValue(ValuePtr(Index)).ToString();
			}
			return FString();
		}

		TSharedPtr<FJsonValue> ExportJsonValue(int32 Index) const override
		{
			return FJsonObjectConverter::UPropertyToJsonValue(Parameters[Index], ValuePtr(Index));
		}

		bool SetObjectValue(int32 Index, FZorvekMCPBridgeObjectHandle Object) override
		{
			const FObjectPropertyBase* ObjectProperty = CastField<FObjectPropertyBase>(Parameters[Index]);
			UObject* Value = static_cast<UObject*>(Object.GetRaw());
			// ProcessEvent trusts the frame: an object of another class must never reach it.
			if (!ObjectProperty || (Value && !Value->IsA(ObjectProperty->PropertyClass)))
			{
				return false;
			}
			ObjectProperty->SetObjectPropertyValue(ValuePtr(Index), Value);
			return true;
		}

		FZorvekMCPBridgeObjectHandle GetObjectValue(int32 Index) const override
		{
			const FObjectPropertyBase* ObjectProperty = CastField<FObjectPropertyBase>(Parameters[Index]);
			return FZorvekMCPBridgeObjectHandle(ObjectProperty ? ObjectProperty->GetObjectPropertyValue(ValuePtr(Index)) : nullptr);
		}

		UFunction* GetFunction() const { return Function; }
		uint8* GetMemory() { return Memory.GetData(); }

	private:
		void* ValuePtr(int32 Index) const
		{
			return Parameters[Index]->ContainerPtrToValuePtr<void>(const_cast<uint8*>(Memory.GetData()));
		}

		UFunction* Function;
		TArray<uint8> Memory;
		TArray<FProperty*> Parameters;
	};

	class FEngineTransaction : public IZorvekMCPBridgeTransaction
	{
	public:
		explicit FEngineTransaction(const FText& Title)
			: Transaction(Title)
		{
		}

	private:
		FScopedTransaction Transaction;
	};
}

UZorvekMCPBridgeVessaExtensionRegistry* UZorvekMCPBridgeVessaExtensionRegistry::Get()
{
	static UZorvekMCPBridgeVessaExtensionRegistry* Registry = nullptr;
	if (!Registry)
	{
		Registry = NewObject<UZorvekMCPBridgeVessaExtensionRegistry>((UObject*)GetTransientPackage());
		Registry->AddToRoot();
	}
	return Registry;
}

bool FZorvekMCPBridgeEngineFunctions::GetClassFunctions(const FString& ClassPath, const TArray<FString>& MetaDataKeys, TArray<FZorvekMCPBridgeFunctionInfo>& OutFunctions) const
{
	const UClass* Class = EngineFindClass(ClassPath);
	if (!Class)
	{
		return false;
	}
	for (TFieldIterator<UFunction> It(Class, EFieldIterationFlags::IncludeSuper); It; ++It)
	{
		OutFunctions.Add(EngineDescribeFunction(*It, MetaDataKeys));
	}
	return true;
}

bool FZorvekMCPBridgeEngineFunctions::FindFunction(const FString& ClassPath, const FString& FunctionName, const TArray<FString>& MetaDataKeys, FZorvekMCPBridgeFunctionInfo& OutFunction) const
{
	const UClass* Class = EngineFindClass(ClassPath);
	const UFunction* Function = Class ? Class->FindFunctionByName(FName(*FunctionName)) : nullptr;
	if (!Function)
	{
		return false;
	}
	OutFunction = EngineDescribeFunction(Function, MetaDataKeys);
	return true;
}

TUniquePtr<IZorvekMCPBridgeParameterBlock> FZorvekMCPBridgeEngineFunctions::CreateParameterBlock(const FString& ClassPath, const FString& FunctionName)
{
	const UClass* Class = EngineFindClass(ClassPath);
	UFunction* Function = Class ? Class->FindFunctionByName(FName(*FunctionName)) : nullptr;
	if (!Function)
	{
		return nullptr;
	}
	return TUniquePtr<IZorvekMCPBridgeParameterBlock>(new FEngineParameterBlock(Function));
}

void FZorvekMCPBridgeEngineFunctions::CallFunction(FZorvekMCPBridgeObjectHandle Object, IZorvekMCPBridgeParameterBlock& Block)
{
	UObject* Target = FZorvekMCPBridgeEngineEditorPort::ToObject(Object);
	FEngineParameterBlock& EngineBlock = static_cast<FEngineParameterBlock&>(Block);
	if (IsValid(Target))
	{
		Target->ProcessEvent(EngineBlock.GetFunction(), EngineBlock.GetMemory());
	}
}

TUniquePtr<IZorvekMCPBridgeTransaction> FZorvekMCPBridgeEngineFunctions::BeginTransaction(const FText& Title)
{
	return TUniquePtr<IZorvekMCPBridgeTransaction>(new FEngineTransaction(Title));
}

TArray<FString> FZorvekMCPBridgeEngineFunctions::GetLoadedDerivedClasses(const FString& BaseClassPath) const
{
	TArray<FString> Paths;
	const UClass* Base = EngineFindClass(BaseClassPath);
	if (!Base)
	{
		return Paths;
	}
	TArray<UObject*> Classes;
	GetObjectsOfClass(UClass::StaticClass(), Classes, true, RF_ClassDefaultObject, EInternalObjectFlags::None);
	for (UObject* Object : Classes)
	{
		const UClass* Class = Cast<UClass>(Object);
		// Skeleton and reinstancing classes carry none of the three flags; their names tell them.
		if (Class && Class != Base && Class->IsChildOf(Base) && !Class->HasAnyClassFlags(CLASS_Abstract | CLASS_Deprecated | CLASS_NewerVersionExists)
			&& !Class->GetName().StartsWith(TEXT("SKEL_")) && !Class->GetName().StartsWith(TEXT("REINST_")))
		{
			Paths.Add(Class->GetPathName());
		}
	}
	return Paths;
}

FString FZorvekMCPBridgeEngineFunctions::GetClassDisplayName(const FString& ClassPath) const
{
	const UClass* Class = EngineFindClass(ClassPath);
	return Class ? Class->GetDisplayNameText().ToString() : FString();
}

bool FZorvekMCPBridgeEngineFunctions::IsAssetRegistryLoading() const
{
	const IAssetRegistry* Registry = IAssetRegistry::Get();
	return !Registry || Registry->IsLoadingAssets();
}

TArray<FZorvekMCPBridgeUtilityBlueprintInfo> FZorvekMCPBridgeEngineFunctions::GetEditorUtilityBlueprints() const
{
	TArray<FZorvekMCPBridgeUtilityBlueprintInfo> Blueprints;
	const IAssetRegistry* Registry = IAssetRegistry::Get();
	if (!Registry)
	{
		return Blueprints;
	}
	FARFilter Filter;
	Filter.ClassPaths.Add(FTopLevelAssetPath(TEXT("/Script/Blutility.EditorUtilityBlueprint")));
	Filter.bRecursiveClasses = true;
	TArray<FAssetData> Assets;
	Registry->GetAssets(Filter, Assets);
	for (const FAssetData& Asset : Assets)
	{
		FZorvekMCPBridgeUtilityBlueprintInfo Info;
		Info.ObjectPath = Asset.GetObjectPathString();
		for (const TPair<FName, FAssetTagValueRef> Tag : Asset.TagsAndValues)
		{
			if (Tag.Key == FName(TEXT("ParentClass")))
			{
				Info.ParentClassTag = Tag.Value.AsString();
			}
		}
		Blueprints.Add(Info);
	}
	return Blueprints;
}

bool FZorvekMCPBridgeEngineFunctions::LoadBlueprintGeneratedClass(const FString& BlueprintObjectPath, FString& OutClassPath)
{
	const UBlueprint* Blueprint = LoadObject<UBlueprint>(nullptr, BlueprintObjectPath);
	const UClass* Generated = Blueprint ? Blueprint->GeneratedClass.Get() : nullptr;
	if (!Generated)
	{
		return false;
	}
	OutClassPath = Generated->GetPathName();
	return true;
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineFunctions::CreateExtensionInstance(const FString& ClassPath)
{
	UClass* Class = EngineFindClass(ClassPath);
	if (!Class || !Class->IsChildOf(UZorvekMCPBridgeVessaExtension::StaticClass()) || Class->HasAnyClassFlags(CLASS_Abstract))
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	UZorvekMCPBridgeVessaExtension* Instance = NewObject<UZorvekMCPBridgeVessaExtension>((UObject*)GetTransientPackage(), Class);
	UZorvekMCPBridgeVessaExtensionRegistry::Get()->RegisteredExtensions.Add(Instance->Definition.ExtensionId, Instance);
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(Instance);
}

void FZorvekMCPBridgeEngineFunctions::ReleaseExtensionInstances()
{
	UZorvekMCPBridgeVessaExtensionRegistry::Get()->RegisteredExtensions.Empty();
}

bool FZorvekMCPBridgeEngineFunctions::IsValidExtension(FZorvekMCPBridgeObjectHandle Extension) const
{
	const UObject* Object = FZorvekMCPBridgeEngineEditorPort::ToObject(Extension);
	return IsValid(Object) && Cast<UZorvekMCPBridgeVessaExtension>(Object) != nullptr;
}

bool FZorvekMCPBridgeEngineFunctions::GetExtensionDefinition(FZorvekMCPBridgeObjectHandle Extension, FZorvekMCPBridgeVessaDefinitionData& OutDefinition) const
{
	const UZorvekMCPBridgeVessaExtension* Object = Cast<UZorvekMCPBridgeVessaExtension>(FZorvekMCPBridgeEngineEditorPort::ToObject(Extension));
	if (!IsValid(Object))
	{
		return false;
	}
	OutDefinition = Object->ToDefinitionData();
	return true;
}

bool FZorvekMCPBridgeEngineFunctions::IsExtensionEnabled(FZorvekMCPBridgeObjectHandle Extension) const
{
	const UZorvekMCPBridgeVessaExtension* Object = Cast<UZorvekMCPBridgeVessaExtension>(FZorvekMCPBridgeEngineEditorPort::ToObject(Extension));
	return IsValid(Object) && Object->IsEnabled();
}
