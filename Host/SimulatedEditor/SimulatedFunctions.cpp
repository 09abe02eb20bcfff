#include "SimulatedFunctions.h"

#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"
#include "Extensions/ZorvekMCPBridgeVessaExtensionLogic.h"
#include "Misc/EngineVersion.h"
#include "SimulatedAssetAuthoring.h"
#include "SimulatedEditorPort.h"

#include <cmath>

const TCHAR* const SimulatedVessa::ExtensionBaseClassPath = TEXT("/Script/ZorvekMCPBridge.ZorvekMCPBridgeVessaExtension");
const TCHAR* const SimulatedVessa::SystemExtensionClassPath = TEXT("/Script/ZorvekMCPBridge.ZorvekMCPBridgeVessaSystemExtension");
const TCHAR* const SimulatedVessa::EditorUtilityBlueprintClassPath = TEXT("/Script/Blutility.EditorUtilityBlueprint");

namespace
{
	// Struct fields are described this many levels deep; deeper structs keep their name only.
	constexpr int32 SimFunctionStructDepth = 4;

	FZorvekMCPBridgeFieldInfo SimDescribeProperty(const FSimulatedProperty& Property, int32 Depth)
	{
		FZorvekMCPBridgeFieldInfo Info;
		Info.Name = Property.Name;
		Info.Flags = Property.Flags;
		switch (Property.Type)
		{
		case ESimulatedPropertyType::Bool: Info.FieldClass = EZorvekMCPBridgeFieldClass::Bool; break;
		case ESimulatedPropertyType::Byte: Info.FieldClass = EZorvekMCPBridgeFieldClass::Byte; break;
		case ESimulatedPropertyType::ByteEnum: Info.FieldClass = EZorvekMCPBridgeFieldClass::Byte; Info.bByteHasEnum = true; break;
		case ESimulatedPropertyType::Int: Info.FieldClass = EZorvekMCPBridgeFieldClass::Int; break;
		case ESimulatedPropertyType::Int64: Info.FieldClass = EZorvekMCPBridgeFieldClass::Int64; break;
		case ESimulatedPropertyType::UInt16: Info.FieldClass = EZorvekMCPBridgeFieldClass::UInt16; break;
		case ESimulatedPropertyType::Float: Info.FieldClass = EZorvekMCPBridgeFieldClass::Float; break;
		case ESimulatedPropertyType::Double: Info.FieldClass = EZorvekMCPBridgeFieldClass::Double; break;
		case ESimulatedPropertyType::String: Info.FieldClass = EZorvekMCPBridgeFieldClass::Str; break;
		case ESimulatedPropertyType::Name: Info.FieldClass = EZorvekMCPBridgeFieldClass::Name; break;
		case ESimulatedPropertyType::Text: Info.FieldClass = EZorvekMCPBridgeFieldClass::Text; break;
		case ESimulatedPropertyType::Enum: Info.FieldClass = EZorvekMCPBridgeFieldClass::Enum; break;
		// FClassProperty derives from FObjectProperty.
		case ESimulatedPropertyType::Object:
		case ESimulatedPropertyType::Class: Info.FieldClass = EZorvekMCPBridgeFieldClass::Object; break;
		case ESimulatedPropertyType::SoftObject: Info.FieldClass = EZorvekMCPBridgeFieldClass::OtherObjectReference; break;
		case ESimulatedPropertyType::Array:
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Array;
			if (Property.Inner)
			{
				Info.Inner.Add(SimDescribeProperty(*Property.Inner, Depth));
			}
			break;
		case ESimulatedPropertyType::Struct:
			Info.FieldClass = EZorvekMCPBridgeFieldClass::Struct;
			if (Property.TypeObject)
			{
				Info.StructName = Property.TypeObject->Name;
				Info.StructPath = Property.TypeObject->GetPathName();
				if (Depth < SimFunctionStructDepth)
				{
					for (const FSimulatedProperty* Field : Property.TypeObject->AllProperties)
					{
						Info.StructFields.Add(SimDescribeProperty(*Field, Depth + 1));
					}
				}
			}
			break;
		}
		return Info;
	}

	FZorvekMCPBridgeFunctionInfo SimDescribeFunction(const FSimulatedFunction& Function, const TArray<FString>& MetaDataKeys)
	{
		FZorvekMCPBridgeFunctionInfo Info;
		Info.Name = Function.Name;
		Info.FunctionFlags = Function.FunctionFlags;
		for (const FString& Key : MetaDataKeys)
		{
			if (const FString* Value = Function.FindMetaData(Key))
			{
				Info.MetaData.Add(Key, *Value);
			}
		}
		for (const std::shared_ptr<FSimulatedProperty>& Parameter : Function.Parameters)
		{
			Info.Parameters.Add(SimDescribeProperty(*Parameter, 0));
		}
		return Info;
	}

	// FJsonValue::AsNumber as the converters read numbers: booleans give 1 or 0, strings their
	// numeric text, anything else 0 (the engine logs a type error and goes on).
	double SimJsonNumber(const FJsonValue& Value)
	{
		switch (Value.Type)
		{
		case EJson::Number: return Value.AsNumber();
		case EJson::Boolean: return Value.AsBool() ? 1.0 : 0.0;
		case EJson::String: return FCString::Atod(*Value.AsString());
		default: return 0.0;
		}
	}

	// FString::ToBool: "true", "yes", "on" (any case) or a non-zero number.
	bool SimStringToBool(const FString& Text)
	{
		const FString Trimmed = Text.TrimStartAndEnd();
		if (Trimmed.Equals(TEXT("true"), ESearchCase::IgnoreCase) || Trimmed.Equals(TEXT("yes"), ESearchCase::IgnoreCase) || Trimmed.Equals(TEXT("on"), ESearchCase::IgnoreCase))
		{
			return true;
		}
		return FCString::Atoi(*Trimmed) != 0;
	}

	FString SimJsonString(const FJsonValue& Value)
	{
		switch (Value.Type)
		{
		case EJson::String: return Value.AsString();
		case EJson::Number: return FString::SanitizeFloat(Value.AsNumber(), 0);
		case EJson::Boolean: return Value.AsBool() ? TEXT("true") : TEXT("false");
		default: return FString();
		}
	}

	// FJsonObjectConverter::StandardizeCase: first letter lower-case, every "ID" written "Id".
	FString SimStandardizeCase(const FString& Name)
	{
		FString Result = Name.Replace(TEXT("ID"), TEXT("Id"), ESearchCase::CaseSensitive);
		if (!Result.IsEmpty())
		{
			Result[0] = FChar::ToLower(Result[0]);
		}
		return Result;
	}

	double SimSrgbToLinear(int32 Channel)
	{
		const double C = Channel / 255.0;
		return C <= 0.04045 ? C / 12.92 : std::pow((C + 0.055) / 1.055, 2.4);
	}

	class FSimParameterBlock : public IZorvekMCPBridgeParameterBlock
	{
	public:
		FSimParameterBlock(const FSimulatedFunctions& InFunctions, const FSimulatedEditor& InEditor, const FSimulatedFunction& InFunction)
			: Functions(InFunctions)
			, Editor(InEditor)
			, Function(InFunction)
		{
			// A zeroed frame with every parameter initialised: structs get their C++ defaults.
			for (const std::shared_ptr<FSimulatedProperty>& Parameter : Function.Parameters)
			{
				Values.push_back(Editor.MakeDefaultValue(*Parameter));
			}
		}

		int32 GetParameterCount() const override { return (int32)Values.size(); }

		bool ImportJsonObject(int32 Index, const TSharedPtr<FJsonObject>& Object) override
		{
			const FSimulatedProperty& Property = *Function.Parameters[Index];
			return Property.TypeObject && Functions.JsonObjectToStruct(*Property.TypeObject, Object, Values[Index]);
		}

		bool ImportJsonValue(int32 Index, const TSharedPtr<FJsonValue>& Value) override
		{
			return Functions.JsonValueToProperty(*Function.Parameters[Index], Value, Values[Index]);
		}

		bool SetStringValue(int32 Index, const FString& Text) override
		{
			const ESimulatedPropertyType Type = Function.Parameters[Index]->Type;
			if (Type != ESimulatedPropertyType::String && Type != ESimulatedPropertyType::Name)
			{
				return false;
			}
			// FName("None") is the empty name.
			Values[Index].Text = Type == ESimulatedPropertyType::Name && Text.Equals(TEXT("None"), ESearchCase::IgnoreCase) ? FString() : Text;
			return true;
		}

		FString GetStringValue(int32 Index) const override
		{
			const FSimulatedValue& Value = Values[Index];
			return Function.Parameters[Index]->Type == ESimulatedPropertyType::Name && Value.Text.IsEmpty() ? FString(TEXT("None")) : Value.Text;
		}

		TSharedPtr<FJsonValue> ExportJsonValue(int32 Index) const override
		{
			return Functions.PropertyToJsonValue(*Function.Parameters[Index], Values[Index]);
		}

		bool SetObjectValue(int32 Index, FZorvekMCPBridgeObjectHandle Object) override
		{
			const FSimulatedProperty& Parameter = *Function.Parameters[Index];
			FSimulatedObject* Value = FSimulatedEditorPort::ToObject(Object);
			if (Parameter.Type != ESimulatedPropertyType::Object && Parameter.Type != ESimulatedPropertyType::Class)
			{
				return false;
			}
			// An object parameter takes objects of its class; a class parameter takes classes (the
			// engine checks only that the value is a UClass; the meta class is the callee's concern).
			if (Value)
			{
				const FSimulatedType* ValueType = dynamic_cast<const FSimulatedType*>(Value);
				const bool bFits = Parameter.Type == ESimulatedPropertyType::Class
					? ValueType != nullptr && ValueType->Kind == ESimulatedTypeKind::Class
					: Value->Class != nullptr && (!Parameter.TypeObject || Value->Class->IsChildOf(Parameter.TypeObject));
				if (!bFits)
				{
					return false;
				}
			}
			Values[Index].Object = Value;
			return true;
		}

		FZorvekMCPBridgeObjectHandle GetObjectValue(int32 Index) const override
		{
			const ESimulatedPropertyType Type = Function.Parameters[Index]->Type;
			if (Type != ESimulatedPropertyType::Object && Type != ESimulatedPropertyType::Class)
			{
				return FZorvekMCPBridgeObjectHandle();
			}
			return FSimulatedEditorPort::ToHandle(Values[Index].Object);
		}

		const FSimulatedFunction& GetFunction() const { return Function; }
		std::vector<FSimulatedValue>& GetValues() { return Values; }

	private:
		const FSimulatedFunctions& Functions;
		const FSimulatedEditor& Editor;
		const FSimulatedFunction& Function;
		std::vector<FSimulatedValue> Values;
	};

	class FSimTransaction : public IZorvekMCPBridgeTransaction
	{
	public:
		FSimTransaction(FSimulatedEditor& InEditor, const FString& Title)
			: Editor(InEditor)
		{
			Editor.BeginTransaction(Title);
		}
		~FSimTransaction() override
		{
			Editor.EndTransaction();
		}

	private:
		FSimulatedEditor& Editor;
	};

	const FSimulatedType* SimFindClass(const FSimulatedEditor& Editor, const FString& ClassPath)
	{
		const FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
		return Class && Class->Kind == ESimulatedTypeKind::Class ? Class : nullptr;
	}

	// Every function of the class and its supers, the class's own first, as TFieldIterator walks.
	void SimForEachFunction(const FSimulatedType& Class, TFunctionRef<void(const FSimulatedFunction&)> Callback)
	{
		for (const FSimulatedType* Type = &Class; Type != nullptr; Type = Type->Super)
		{
			for (const std::shared_ptr<FSimulatedFunction>& Function : Type->Functions)
			{
				Callback(*Function);
			}
		}
	}
}

// Undo transactions of the simulated editor.

void FSimulatedEditor::BeginTransaction(const FString& Title)
{
	if (TransactionDepth++ == 0)
	{
		OpenTransaction = FSimulatedTransaction();
		OpenTransaction.Title = Title;
	}
}

void FSimulatedEditor::EndTransaction()
{
	if (TransactionDepth > 0 && --TransactionDepth == 0 && OpenTransaction.RecordedChanges > 0)
	{
		UndoBuffer.push_back(OpenTransaction);
	}
}

void FSimulatedEditor::RecordTransactionalChange()
{
	if (TransactionDepth > 0)
	{
		++OpenTransaction.RecordedChanges;
	}
}

FSimulatedVessaState& FSimulatedEditor::GetVessaState()
{
	if (!VessaState)
	{
		VessaState = std::make_shared<FSimulatedVessaState>();
	}
	return *VessaState;
}

FSimulatedFunction* SimulatedVessa::AddFunction(FSimulatedEditor& Editor, FSimulatedType* Class, const FString& Name, uint32 FunctionFlags,
	std::initializer_list<FParameterSpec> Parameters, std::initializer_list<std::pair<const TCHAR*, const TCHAR*>> MetaData, FSimulatedFunctionBody Body)
{
	std::shared_ptr<FSimulatedFunction> Function = std::make_shared<FSimulatedFunction>();
	Function->Name = Name;
	Function->Owner = Class;
	Function->FunctionFlags = FunctionFlags;
	for (const FParameterSpec& Spec : Parameters)
	{
		FString Error;
		std::shared_ptr<FSimulatedProperty> Parameter = Editor.MakeProperty(Spec.Name, Spec.TypeText, Spec.Flags | SimulatedParameterFlags::Parm, Error);
		check(Parameter);
		if ((Spec.Flags & SimulatedParameterFlags::OutParm) != 0)
		{
			Function->FunctionFlags |= SimulatedFunctionFlags::HasOutParms;
		}
		Function->Parameters.push_back(Parameter);
	}
	for (const std::pair<const TCHAR*, const TCHAR*>& Entry : MetaData)
	{
		Function->MetaData.Add(Entry.first, Entry.second);
	}
	Function->Body = MoveTemp(Body);
	Class->Functions.push_back(Function);
	return Function.get();
}

void SimulatedVessa::EnsurePluginClasses(FSimulatedEditor& Editor)
{
	if (Editor.FindTypeByPath(ExtensionBaseClassPath))
	{
		return;
	}
	using namespace SimulatedFunctionFlags;
	using namespace SimulatedParameterFlags;
	FString Error;
	FSimulatedType* Base = Editor.AddClass(ExtensionBaseClassPath, TEXT("/Script/CoreUObject.Object"), 0, Error);
	check(Base);
	FSimulatedProperty* Enabled = Editor.AddProperty(Base, TEXT("bEnabled"), TEXT("bool"), ZorvekMCPBridgePropertyFlags::Edit | ZorvekMCPBridgePropertyFlags::BlueprintVisible, Error);
	Enabled->Default = std::make_shared<FSimulatedValue>();
	Enabled->Default->Bool = true;
	Base->RebuildPropertyList();

	const uint32 StaticCallable = Static | Public | Native | BlueprintCallable;
	AddFunction(Editor, Base, TEXT("IsActive"), Event | Public | BlueprintEvent | BlueprintCallable | Const | Native, {{TEXT("ReturnValue"), TEXT("bool"), OutParm | ReturnParm}},
		{{TEXT("Category"), TEXT("Vessa")}}, [](FSimulatedObject&, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values) { Values[0].Bool = true; });
	AddFunction(Editor, Base, TEXT("DiscoverActionsAndQueries"), Public | Native | BlueprintCallable, {}, {{TEXT("CallInEditor"), TEXT("true")}, {TEXT("Category"), TEXT("Vessa")}}, nullptr);
	AddFunction(Editor, Base, TEXT("ReportExtensionError"), StaticCallable, {{TEXT("ErrorMessage"), TEXT("FString"), OutParm | ReferenceParm | ConstParm}},
		{{TEXT("Category"), TEXT("Vessa")}}, [](FSimulatedObject&, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values) { ZorvekMCPBridgeVessaReports::ReportError(Values[0].Text); });
	AddFunction(Editor, Base, TEXT("ReportExtensionResults"), StaticCallable, {{TEXT("ResultsMessage"), TEXT("FString"), OutParm | ReferenceParm | ConstParm}},
		{{TEXT("Category"), TEXT("Vessa")}}, [](FSimulatedObject&, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values) { ZorvekMCPBridgeVessaReports::ReportResults(Values[0].Text); });
	AddFunction(Editor, Base, TEXT("GetCurrentlyEditedAsset"), StaticCallable | BlueprintPure, {{TEXT("ReturnValue"), TEXT("object:/Script/CoreUObject.Object"), OutParm | ReturnParm}},
		{{TEXT("Category"), TEXT("Vessa")}, {TEXT("DisplayName"), TEXT("Get Currently Edited Asset")}}, nullptr);

	FSimulatedType* System = Editor.AddClass(SystemExtensionClassPath, ExtensionBaseClassPath, 0, Error);
	check(System);
	AddFunction(Editor, System, TEXT("GetStatus"), Public | Native | BlueprintCallable | HasOutParms,
		{{TEXT("Backend"), TEXT("FString"), OutParm}, {TEXT("UnrealVersion"), TEXT("FString"), OutParm}, {TEXT("bStandalone"), TEXT("bool"), OutParm}},
		{{TEXT("Category"), TEXT("Vessa Queries")}, {TEXT("ToolTip"), TEXT("Return standalone MCP Bridge/Vessa extension system status.")}},
		[](FSimulatedObject&, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values)
		{
			Values[0].Text = TEXT("native_unreal_editor");
			Values[1].Text = FEngineVersion::Current().ToString();
			Values[2].Bool = true;
		});
	FSimulatedVessaClassDefault& SystemDefault = Editor.GetVessaState().ClassDefaults[System];
	SystemDefault.Definition.ExtensionName = TEXT("Vessa System");
	SystemDefault.Definition.ExtensionDescription = TEXT("Built-in standalone Vessa extension for MCP bridge status and diagnostics.");
	SystemDefault.Definition.bIsSystemExtension = true;

	if (!Editor.FindTypeByPath(EditorUtilityBlueprintClassPath))
	{
		Editor.AddClass(EditorUtilityBlueprintClassPath, TEXT("/Script/Engine.Blueprint"), 0, Error);
	}
}

FSimulatedFunctions::FSimulatedFunctions(FSimulatedEditor& InEditor, const FSimulatedAssetAuthoring& InAssetAuthoring)
	: Editor(InEditor)
	, AssetAuthoring(InAssetAuthoring)
{
	SimulatedVessa::EnsurePluginClasses(Editor);
}

bool FSimulatedFunctions::GetClassFunctions(const FString& ClassPath, const TArray<FString>& MetaDataKeys, TArray<FZorvekMCPBridgeFunctionInfo>& OutFunctions) const
{
	const FSimulatedType* Class = SimFindClass(Editor, ClassPath);
	if (!Class)
	{
		return false;
	}
	SimForEachFunction(*Class, [&](const FSimulatedFunction& Function) { OutFunctions.Add(SimDescribeFunction(Function, MetaDataKeys)); });
	return true;
}

bool FSimulatedFunctions::FindFunction(const FString& ClassPath, const FString& FunctionName, const TArray<FString>& MetaDataKeys, FZorvekMCPBridgeFunctionInfo& OutFunction) const
{
	const FSimulatedType* Class = SimFindClass(Editor, ClassPath);
	const FSimulatedFunction* Function = Class ? Class->FindFunction(FunctionName) : nullptr;
	if (!Function)
	{
		return false;
	}
	OutFunction = SimDescribeFunction(*Function, MetaDataKeys);
	return true;
}

TUniquePtr<IZorvekMCPBridgeParameterBlock> FSimulatedFunctions::CreateParameterBlock(const FString& ClassPath, const FString& FunctionName)
{
	const FSimulatedType* Class = SimFindClass(Editor, ClassPath);
	const FSimulatedFunction* Function = Class ? Class->FindFunction(FunctionName) : nullptr;
	if (!Function)
	{
		return nullptr;
	}
	return TUniquePtr<IZorvekMCPBridgeParameterBlock>(new FSimParameterBlock(*this, Editor, *Function));
}

void FSimulatedFunctions::CallFunction(FZorvekMCPBridgeObjectHandle Object, IZorvekMCPBridgeParameterBlock& Block)
{
	FSimulatedObject* Self = FSimulatedEditorPort::ToObject(Object);
	FSimParameterBlock& SimBlock = static_cast<FSimParameterBlock&>(Block);
	const FSimulatedFunction& Function = SimBlock.GetFunction();
	// ProcessEvent does nothing on an object the function does not belong to, or a bodiless event.
	if (Self && Self->Class && Self->Class->IsChildOf(Function.Owner) && Function.Body)
	{
		Function.Body(*Self, Function, SimBlock.GetValues());
	}
}

TUniquePtr<IZorvekMCPBridgeTransaction> FSimulatedFunctions::BeginTransaction(const FText& Title)
{
	return TUniquePtr<IZorvekMCPBridgeTransaction>(new FSimTransaction(Editor, Title.ToString()));
}

TArray<FString> FSimulatedFunctions::GetLoadedDerivedClasses(const FString& BaseClassPath) const
{
	TArray<FString> Classes;
	const FSimulatedType* Base = SimFindClass(Editor, BaseClassPath);
	if (!Base)
	{
		return Classes;
	}
	const uint32 Skipped = ZorvekMCPBridgeClassFlags::Abstract | ZorvekMCPBridgeClassFlags::Deprecated | ZorvekMCPBridgeClassFlags::NewerVersionExists;
	Editor.ForEachObject([&](FSimulatedObject* Object)
	{
		const FSimulatedType* Type = static_cast<const FSimulatedType*>(Object);
		if (Object->Class != Editor.GetClassClass() && !(Object->Class && Object->Class->GetPathName() == TEXT("/Script/Engine.BlueprintGeneratedClass")))
		{
			return;
		}
		if (Type->Kind == ESimulatedTypeKind::Class && Type != Base && Type->IsChildOf(Base) && (Type->ClassFlags & Skipped) == 0
			&& !Type->Name.StartsWith(TEXT("SKEL_")) && !Type->Name.StartsWith(TEXT("REINST_")))
		{
			Classes.Add(Type->GetPathName());
		}
	});
	return Classes;
}

FString FSimulatedFunctions::GetClassDisplayName(const FString& ClassPath) const
{
	return AssetAuthoring.GetClassDisplayName(ClassPath);
}

bool FSimulatedFunctions::IsAssetRegistryLoading() const
{
	return Editor.GetVessaState().bAssetRegistryLoading;
}

TArray<FZorvekMCPBridgeUtilityBlueprintInfo> FSimulatedFunctions::GetEditorUtilityBlueprints() const
{
	TArray<FZorvekMCPBridgeUtilityBlueprintInfo> Blueprints;
	const FSimulatedType* UtilityClass = SimFindClass(Editor, SimulatedVessa::EditorUtilityBlueprintClassPath);
	if (!UtilityClass)
	{
		return Blueprints;
	}
	for (const FZorvekMCPBridgeAssetData& Asset : Editor.GetRegistry())
	{
		const FSimulatedType* AssetClass = SimFindClass(Editor, Asset.AssetClassPath);
		if (!AssetClass || !AssetClass->IsChildOf(UtilityClass))
		{
			continue;
		}
		FZorvekMCPBridgeUtilityBlueprintInfo& Info = Blueprints[Blueprints.AddDefaulted()];
		Info.ObjectPath = Asset.ObjectPath;
		for (const FZorvekMCPBridgeAssetTag& Tag : Asset.Tags)
		{
			if (Tag.Name == TEXT("ParentClass"))
			{
				Info.ParentClassTag = Tag.Value;
			}
		}
	}
	return Blueprints;
}

bool FSimulatedFunctions::LoadBlueprintGeneratedClass(const FString& BlueprintObjectPath, FString& OutClassPath)
{
	const FString ClassPath = BlueprintObjectPath + TEXT("_C");
	if (!SimFindClass(Editor, ClassPath))
	{
		FSimulatedVessaState& State = Editor.GetVessaState();
		const TFunction<bool(FSimulatedEditor&)>* Loader = State.PendingBlueprintLoads.Find(BlueprintObjectPath);
		if (!Loader || !(*Loader)(Editor) || !SimFindClass(Editor, ClassPath))
		{
			return false;
		}
	}
	OutClassPath = ClassPath;
	return true;
}

FSimulatedVessaClassDefault* FSimulatedFunctions::GetClassDefault(const FString& ClassPath)
{
	const FSimulatedType* Class = SimFindClass(Editor, ClassPath);
	const FSimulatedType* Base = SimFindClass(Editor, SimulatedVessa::ExtensionBaseClassPath);
	if (!Class || !Base || !Class->IsChildOf(Base))
	{
		return nullptr;
	}
	FSimulatedVessaClassDefault& Default = Editor.GetVessaState().ClassDefaults[Class];
	if (!Default.bRefreshed)
	{
		// PostInitProperties of the class default object, once the class is loaded.
		Default.bRefreshed = true;
		ZorvekMCPBridgeVessa::RefreshExtension(*this, ClassPath, Default.Definition);
	}
	return &Default;
}

void FSimulatedFunctions::RecompileExtensionClass(const FString& ClassPath)
{
	if (FSimulatedVessaClassDefault* Default = GetClassDefault(ClassPath))
	{
		ZorvekMCPBridgeVessa::RefreshExtension(*this, ClassPath, Default->Definition);
	}
}

FZorvekMCPBridgeObjectHandle FSimulatedFunctions::CreateExtensionInstance(const FString& ClassPath)
{
	FSimulatedVessaClassDefault* Default = GetClassDefault(ClassPath);
	FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
	if (!Default || !Class || (Class->ClassFlags & ZorvekMCPBridgeClassFlags::Abstract) != 0)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	FSimulatedVessaState& State = Editor.GetVessaState();
	FSimulatedObject* Transient = Editor.FindOrCreatePackage(TEXT("/Engine/Transient"));
	FString Error;
	FSimulatedObject* Instance = Editor.CreateObject(Class, Transient, FString::Printf(TEXT("%s_%d"), *Class->Name, State.InstanceCounter++), Error);
	if (!Instance)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	const int32 EnabledIndex = Class->FindPropertyIndex(TEXT("bEnabled"));
	if (EnabledIndex != INDEX_NONE)
	{
		Instance->Values[EnabledIndex].Bool = Default->bEnabled;
	}
	State.Instances[Instance] = Default->Definition;
	return FSimulatedEditorPort::ToHandle(Instance);
}

void FSimulatedFunctions::ReleaseExtensionInstances()
{
	// Released instances are left for garbage collection; nothing reaches them any more.
	Editor.GetVessaState().Instances.clear();
}

bool FSimulatedFunctions::IsValidExtension(FZorvekMCPBridgeObjectHandle Extension) const
{
	return Editor.GetVessaState().Instances.count(FSimulatedEditorPort::ToObject(Extension)) != 0;
}

bool FSimulatedFunctions::GetExtensionDefinition(FZorvekMCPBridgeObjectHandle Extension, FZorvekMCPBridgeVessaDefinitionData& OutDefinition) const
{
	FSimulatedVessaState& State = Editor.GetVessaState();
	const FSimulatedObject* Object = FSimulatedEditorPort::ToObject(Extension);
	const auto Found = State.Instances.find(Object);
	if (Found == State.Instances.end())
	{
		return false;
	}
	// GetExtensionDefinition copies the instance's Definition; a recompiled class re-instances
	// its objects with the new class defaults, so the instance follows its class here.
	const auto ClassDefault = State.ClassDefaults.find(Object->Class);
	OutDefinition = ClassDefault != State.ClassDefaults.end() && ClassDefault->second.bRefreshed ? ClassDefault->second.Definition : Found->second;
	return true;
}

bool FSimulatedFunctions::IsExtensionEnabled(FZorvekMCPBridgeObjectHandle Extension) const
{
	const FSimulatedObject* Object = FSimulatedEditorPort::ToObject(Extension);
	const int32 EnabledIndex = Object && Object->Class ? Object->Class->FindPropertyIndex(TEXT("bEnabled")) : INDEX_NONE;
	return EnabledIndex != INDEX_NONE && Object->Values[EnabledIndex].Bool;
}

bool FSimulatedFunctions::JsonObjectToStruct(const FSimulatedType& Struct, const TSharedPtr<FJsonObject>& JsonObject, FSimulatedValue& OutValue) const
{
	if (!JsonObject.IsValid())
	{
		return false;
	}
	if (OutValue.Items.size() < Struct.AllProperties.size())
	{
		OutValue.Items.resize(Struct.AllProperties.size());
	}
	// Field by field (not key by key): keys match without regard to case, missing and null ones
	// are skipped, extra keys ignored; the first field that fails fails the call.
	for (size_t Index = 0; Index < Struct.AllProperties.size(); ++Index)
	{
		const FSimulatedProperty& Field = *Struct.AllProperties[Index];
		const TSharedPtr<FJsonValue> Value = JsonObject->TryGetField(Field.Name);
		if (!Value.IsValid() || Value->Type == EJson::Null)
		{
			continue;
		}
		if (!JsonValueToProperty(Field, Value, OutValue.Items[Index]))
		{
			return false;
		}
	}
	return true;
}

bool FSimulatedFunctions::JsonValueToProperty(const FSimulatedProperty& Property, const TSharedPtr<FJsonValue>& JsonValue, FSimulatedValue& OutValue) const
{
	if (!JsonValue.IsValid())
	{
		return false;
	}
	const FJsonValue& Value = *JsonValue;
	FString Error;
	switch (Property.Type)
	{
	case ESimulatedPropertyType::Bool:
		OutValue.Bool = Value.Type == EJson::Boolean ? Value.AsBool() : (Value.Type == EJson::String ? SimStringToBool(Value.AsString()) : SimJsonNumber(Value) != 0.0);
		return true;
	case ESimulatedPropertyType::Byte:
	case ESimulatedPropertyType::Int:
	case ESimulatedPropertyType::Int64:
	case ESimulatedPropertyType::UInt16:
	{
		// Numbers truncate through int64 and narrow without a range check; strings go through Atoi64.
		const int64 Number = Value.Type == EJson::String ? FCString::Atoi64(*Value.AsString()) : (int64)SimJsonNumber(Value);
		switch (Property.Type)
		{
		case ESimulatedPropertyType::Byte: OutValue.Integer = (uint8)Number; break;
		case ESimulatedPropertyType::Int: OutValue.Integer = (int32)Number; break;
		case ESimulatedPropertyType::UInt16: OutValue.Integer = (uint16)Number; break;
		default: OutValue.Integer = Number; break;
		}
		return true;
	}
	case ESimulatedPropertyType::Float:
		OutValue.Real = (float)SimJsonNumber(Value);
		return true;
	case ESimulatedPropertyType::Double:
		OutValue.Real = SimJsonNumber(Value);
		return true;
	case ESimulatedPropertyType::String:
	case ESimulatedPropertyType::Text:
		OutValue.Text = SimJsonString(Value);
		return true;
	case ESimulatedPropertyType::Name:
		return Editor.ImportValueText(Property, OutValue, SimJsonString(Value), Error);
	case ESimulatedPropertyType::Enum:
	case ESimulatedPropertyType::ByteEnum:
	{
		const FSimulatedType* Enum = Property.TypeObject;
		if (Value.Type == EJson::String)
		{
			FString Name = Value.AsString();
			int32 Separator = INDEX_NONE;
			if (Name.FindLastChar(TEXT(':'), Separator))
			{
				Name = Name.Mid(Separator + 1);
			}
			for (int32 Index = 0; Enum && Index < Enum->EnumNames.Num(); ++Index)
			{
				if (Enum->EnumNames[Index].Equals(Name, ESearchCase::IgnoreCase))
				{
					OutValue.Integer = Enum->EnumValues[Index];
					return true;
				}
			}
			// "Unable to import enum %s from string value %s for property %s"
			return false;
		}
		OutValue.Integer = (int64)SimJsonNumber(Value);
		return true;
	}
	case ESimulatedPropertyType::Array:
	{
		if (Value.Type != EJson::Array || !Property.Inner)
		{
			// "Unable to import non-array JSON value into Array property %s"
			return false;
		}
		const TArray<TSharedPtr<FJsonValue>>& Elements = Value.AsArray();
		OutValue.Items.clear();
		for (const TSharedPtr<FJsonValue>& Element : Elements)
		{
			FSimulatedValue Item = Editor.MakeDefaultValue(*Property.Inner);
			if (!JsonValueToProperty(*Property.Inner, Element, Item))
			{
				return false;
			}
			OutValue.Items.push_back(MoveTemp(Item));
		}
		return true;
	}
	case ESimulatedPropertyType::Struct:
	{
		const FSimulatedType* Struct = Property.TypeObject;
		if (!Struct)
		{
			return false;
		}
		if (Value.Type == EJson::Object)
		{
			return JsonObjectToStruct(*Struct, Value.AsObject(), OutValue);
		}
		if (Value.Type != EJson::String)
		{
			return false;
		}
		const FString Text = Value.AsString();
		if ((Struct->Name == TEXT("LinearColor") || Struct->Name == TEXT("Color")) && Struct->AllProperties.size() == 4)
		{
			// FColor::FromHex: "#RRGGBB", "RRGGBB" or with alpha; FLinearColor converts from sRGB.
			FString Hex = Text.StartsWith(TEXT("#")) ? Text.Mid(1) : Text;
			uint32 Channels[4] = {0, 0, 0, 255};
			const int32 Count = Hex.Len() == 8 ? 4 : (Hex.Len() == 6 ? 3 : 0);
			for (int32 Channel = 0; Channel < Count; ++Channel)
			{
				const int32 High = GetHexDigitValue(Hex[Channel * 2]);
				const int32 Low = GetHexDigitValue(Hex[Channel * 2 + 1]);
				Channels[Channel] = High < 0 || Low < 0 ? 0 : (uint32)(High * 16 + Low);
			}
			OutValue.Items.resize(4);
			for (size_t Index = 0; Index < 4; ++Index)
			{
				const FString& FieldName = Struct->AllProperties[Index]->Name;
				const int32 Channel = FieldName == TEXT("R") ? 0 : FieldName == TEXT("G") ? 1 : FieldName == TEXT("B") ? 2 : 3;
				if (Struct->Name == TEXT("Color"))
				{
					OutValue.Items[Index].Integer = Channels[Channel];
				}
				else
				{
					OutValue.Items[Index].Real = Channel == 3 ? Channels[Channel] / 255.0 : SimSrgbToLinear((int32)Channels[Channel]);
				}
			}
			return true;
		}
		return Editor.ImportValueText(Property, OutValue, Text, Error);
	}
	case ESimulatedPropertyType::Object:
	case ESimulatedPropertyType::Class:
	case ESimulatedPropertyType::SoftObject:
		if (Value.Type == EJson::String)
		{
			return Editor.ImportValueText(Property, OutValue, Value.AsString(), Error);
		}
		// A JSON object would make a new object of "_ClassName"; extensions do not take those here.
		return false;
	}
	return false;
}

TSharedPtr<FJsonValue> FSimulatedFunctions::PropertyToJsonValue(const FSimulatedProperty& Property, const FSimulatedValue& Value) const
{
	switch (Property.Type)
	{
	case ESimulatedPropertyType::Bool:
		return MakeShared<FJsonValueBoolean>(Value.Bool);
	case ESimulatedPropertyType::Byte:
	case ESimulatedPropertyType::Int:
	case ESimulatedPropertyType::Int64:
	case ESimulatedPropertyType::UInt16:
		return MakeShared<FJsonValueNumber>((double)Value.Integer);
	case ESimulatedPropertyType::Float:
	case ESimulatedPropertyType::Double:
		return MakeShared<FJsonValueNumber>(Value.Real);
	case ESimulatedPropertyType::String:
	case ESimulatedPropertyType::Text:
		return MakeShared<FJsonValueString>(Value.Text);
	case ESimulatedPropertyType::Name:
		return MakeShared<FJsonValueString>(Value.Text.IsEmpty() ? FString(TEXT("None")) : Value.Text);
	case ESimulatedPropertyType::Enum:
	case ESimulatedPropertyType::ByteEnum:
	{
		const FSimulatedType* Enum = Property.TypeObject;
		for (int32 Index = 0; Enum && Index < Enum->EnumValues.Num(); ++Index)
		{
			if (Enum->EnumValues[Index] == Value.Integer)
			{
				return MakeShared<FJsonValueString>(Enum->EnumNames[Index]);
			}
		}
		return MakeShared<FJsonValueString>(FString());
	}
	case ESimulatedPropertyType::Array:
	{
		TArray<TSharedPtr<FJsonValue>> Elements;
		for (const FSimulatedValue& Item : Value.Items)
		{
			const TSharedPtr<FJsonValue> Element = Property.Inner ? PropertyToJsonValue(*Property.Inner, Item) : nullptr;
			if (!Element.IsValid())
			{
				return nullptr;
			}
			Elements.Add(Element);
		}
		return MakeShared<FJsonValueArray>(Elements);
	}
	case ESimulatedPropertyType::Struct:
	{
		const FSimulatedType* Struct = Property.TypeObject;
		if (!Struct)
		{
			return nullptr;
		}
		if (Struct->StructTextForm == ESimulatedStructTextForm::Guid || Struct->StructTextForm == ESimulatedStructTextForm::Verbatim)
		{
			// Structs with a native exporter are written as their export text.
			FString Text;
			Editor.ExportValueText(Property, Value, false, Text);
			return MakeShared<FJsonValueString>(Text);
		}
		TSharedPtr<FJsonObject> Object = MakeShared<FJsonObject>();
		for (size_t Index = 0; Index < Struct->AllProperties.size() && Index < Value.Items.size(); ++Index)
		{
			const FSimulatedProperty& Field = *Struct->AllProperties[Index];
			if ((Field.Flags & (ZorvekMCPBridgePropertyFlags::Transient | ZorvekMCPBridgePropertyFlags::Deprecated)) != 0)
			{
				continue;
			}
			const TSharedPtr<FJsonValue> FieldValue = PropertyToJsonValue(Field, Value.Items[Index]);
			if (!FieldValue.IsValid())
			{
				return nullptr;
			}
			Object->SetField(SimStandardizeCase(Field.Name), FieldValue);
		}
		return MakeShared<FJsonValueObject>(Object);
	}
	case ESimulatedPropertyType::Object:
	case ESimulatedPropertyType::Class:
	case ESimulatedPropertyType::SoftObject:
	{
		FString Text;
		Editor.ExportValueText(Property, Value, false, Text);
		return MakeShared<FJsonValueString>(Text);
	}
	}
	return nullptr;
}
