#include "Extensions/ZorvekMCPBridgeVessaExtensionLogic.h"

#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"
#include "Serialization/JsonWriter.h"

const TCHAR* const ZorvekMCPBridgeVessa::ExtensionBaseClassPath = TEXT("/Script/ZorvekMCPBridge.ZorvekMCPBridgeVessaExtension");

namespace
{
	const TCHAR* const VessaActionMarkers[] = {TEXT("VessaAction"), TEXT("ZorvekVessaAction"), TEXT("ZorvikVessaAction")};
	const TCHAR* const VessaQueryMarkers[] = {TEXT("VessaQuery"), TEXT("ZorvekVessaQuery"), TEXT("ZorvikVessaQuery")};
	const TCHAR* const VessaActionCategories[] = {TEXT("VessaActions"), TEXT("ZorvikVessaActions"), TEXT("ZorvekVessaActions")};
	const TCHAR* const VessaQueryCategories[] = {TEXT("VessaQueries"), TEXT("ZorvikVessaQueries"), TEXT("ZorvekVessaQueries")};

	template <int32 Count>
	bool VessaHasAnyMetaData(const FZorvekMCPBridgeFunctionInfo& Function, const TCHAR* const (&Keys)[Count])
	{
		for (const TCHAR* Key : Keys)
		{
			if (Function.MetaData.Contains(FString(Key)))
			{
				return true;
			}
		}
		return false;
	}

	template <int32 Count>
	bool VessaCategoryContainsAny(const FString& Category, const TCHAR* const (&Words)[Count])
	{
		for (const TCHAR* Word : Words)
		{
			if (Category.Contains(Word, ESearchCase::IgnoreCase))
			{
				return true;
			}
		}
		return false;
	}

	FString VessaGetMetaData(const FZorvekMCPBridgeFunctionInfo& Function, const TCHAR* Key)
	{
		const FString* Value = Function.MetaData.Find(FString(Key));
		return Value ? *Value : FString();
	}

	FString VessaSerializeCondensed(const TSharedPtr<FJsonObject>& Object)
	{
		FString Text;
		const TSharedRef<TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>> Writer = TJsonWriterFactory<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>::Create(&Text);
		FJsonSerializer::Serialize(Object.ToSharedRef(), Writer);
		return Text;
	}

	FZorvekMCPBridgeVessaParameterInfo VessaMakeParameter(const FZorvekMCPBridgeFieldInfo& Property, const TMap<FString, FString>& SavedDescriptions, const FString& DescriptionKey)
	{
		FZorvekMCPBridgeVessaParameterInfo Parameter;
		Parameter.Name = Property.Name;
		Parameter.ParameterType = ZorvekMCPBridgeVessa::GetParameterTypeForProperty(&Property);
		Parameter.ArrayElementType = Property.Inner.Num() > 0 ? ZorvekMCPBridgeVessa::GetParameterTypeForProperty(&Property.Inner[0]) : EZorvekMCPBridgeVessaParameterKind::None;
		if (Parameter.ParameterType == EZorvekMCPBridgeVessaParameterKind::CustomStruct)
		{
			Parameter.StructElementPath = Property.StructPath;
		}
		if (const FString* Saved = SavedDescriptions.Find(DescriptionKey))
		{
			Parameter.Description = *Saved;
		}
		ZorvekMCPBridgeVessa::RefreshJsonString(Parameter, Property);
		return Parameter;
	}

	TArray<TSharedPtr<FJsonValue>> VessaParametersJson(const TArray<FZorvekMCPBridgeVessaParameterInfo>& Parameters)
	{
		TArray<TSharedPtr<FJsonValue>> Values;
		for (const FZorvekMCPBridgeVessaParameterInfo& Parameter : Parameters)
		{
			TSharedPtr<FJsonObject> Object;
			const TSharedRef<TJsonReader<TCHAR>> Reader = TJsonReaderFactory<TCHAR>::Create(Parameter.ParameterTypeJsonString);
			if (!FJsonSerializer::Deserialize(Reader, Object) || !Object.IsValid())
			{
				Object = MakeShared<FJsonObject>();
			}
			Values.Add(MakeShared<FJsonValueObject>(Object));
		}
		return Values;
	}

	TSharedPtr<FJsonValue> VessaQueryError(const FString& Message)
	{
		TSharedPtr<FJsonObject> Error = MakeShared<FJsonObject>();
		Error->SetStringField(TEXT("error"), Message);
		return MakeShared<FJsonValueObject>(Error);
	}
}

FString ZorvekMCPBridgeVessa::GetParameterStringForType(EZorvekMCPBridgeVessaParameterKind Kind)
{
	switch (Kind)
	{
	case EZorvekMCPBridgeVessaParameterKind::String: return TEXT("String");
	case EZorvekMCPBridgeVessaParameterKind::Int: return TEXT("Int");
	case EZorvekMCPBridgeVessaParameterKind::Float: return TEXT("Float");
	case EZorvekMCPBridgeVessaParameterKind::Bool: return TEXT("Bool");
	case EZorvekMCPBridgeVessaParameterKind::Vector3: return TEXT("Vector3");
	case EZorvekMCPBridgeVessaParameterKind::Color: return TEXT("Color");
	case EZorvekMCPBridgeVessaParameterKind::Rotator: return TEXT("Rotator");
	case EZorvekMCPBridgeVessaParameterKind::LinearColor: return TEXT("LinearColor");
	case EZorvekMCPBridgeVessaParameterKind::Enum: return TEXT("Enum");
	case EZorvekMCPBridgeVessaParameterKind::Array: return TEXT("Array");
	case EZorvekMCPBridgeVessaParameterKind::Transform: return TEXT("Transform");
	case EZorvekMCPBridgeVessaParameterKind::CustomStruct: return TEXT("CustomStruct");
	case EZorvekMCPBridgeVessaParameterKind::Object: return TEXT("Object");
	default: return TEXT("Unknown");
	}
}

FString ZorvekMCPBridgeVessa::GetContextTypeName(EZorvekMCPBridgeVessaContextKind Kind)
{
	return Kind == EZorvekMCPBridgeVessaContextKind::AssetEditor ? TEXT("AssetEditor") : TEXT("Any");
}

EZorvekMCPBridgeVessaParameterKind ZorvekMCPBridgeVessa::GetParameterTypeForProperty(const FZorvekMCPBridgeFieldInfo* Property)
{
	if (Property == nullptr)
	{
		return EZorvekMCPBridgeVessaParameterKind::None;
	}
	switch (Property->FieldClass)
	{
	case EZorvekMCPBridgeFieldClass::Array:
		return EZorvekMCPBridgeVessaParameterKind::Array;
	case EZorvekMCPBridgeFieldClass::Str:
	case EZorvekMCPBridgeFieldClass::Name:
	case EZorvekMCPBridgeFieldClass::Text:
		return EZorvekMCPBridgeVessaParameterKind::String;
	case EZorvekMCPBridgeFieldClass::Int:
		return EZorvekMCPBridgeVessaParameterKind::Int;
	case EZorvekMCPBridgeFieldClass::Float:
	case EZorvekMCPBridgeFieldClass::Double:
		return EZorvekMCPBridgeVessaParameterKind::Float;
	case EZorvekMCPBridgeFieldClass::Bool:
		return EZorvekMCPBridgeVessaParameterKind::Bool;
	case EZorvekMCPBridgeFieldClass::Struct:
		if (Property->StructName == TEXT("Vector"))
		{
			return EZorvekMCPBridgeVessaParameterKind::Vector3;
		}
		if (Property->StructName == TEXT("Color"))
		{
			return EZorvekMCPBridgeVessaParameterKind::Color;
		}
		if (Property->StructName == TEXT("LinearColor"))
		{
			return EZorvekMCPBridgeVessaParameterKind::LinearColor;
		}
		if (Property->StructName == TEXT("Rotator"))
		{
			return EZorvekMCPBridgeVessaParameterKind::Rotator;
		}
		if (Property->StructName == TEXT("Transform"))
		{
			return EZorvekMCPBridgeVessaParameterKind::Transform;
		}
		return EZorvekMCPBridgeVessaParameterKind::CustomStruct;
	case EZorvekMCPBridgeFieldClass::Enum:
	case EZorvekMCPBridgeFieldClass::Byte:
		return EZorvekMCPBridgeVessaParameterKind::Enum;
	case EZorvekMCPBridgeFieldClass::Object:
		return EZorvekMCPBridgeVessaParameterKind::Object;
	default:
		// Other integer widths, soft and weak references, sets and maps.
		return EZorvekMCPBridgeVessaParameterKind::None;
	}
}

void ZorvekMCPBridgeVessa::InsertPropertyAsJson(const FZorvekMCPBridgeFieldInfo& Property, FJsonObject& OutJson)
{
	const EZorvekMCPBridgeVessaParameterKind Kind = GetParameterTypeForProperty(&Property);
	OutJson.SetStringField(TEXT("type"), GetParameterStringForType(Kind));
	if (Kind == EZorvekMCPBridgeVessaParameterKind::Array && Property.Inner.Num() > 0)
	{
		TSharedPtr<FJsonObject> Element = MakeShared<FJsonObject>();
		InsertPropertyAsJson(Property.Inner[0], *Element);
		OutJson.SetObjectField(TEXT("arrayElement"), Element);
	}
	else if (Kind == EZorvekMCPBridgeVessaParameterKind::CustomStruct)
	{
		TSharedPtr<FJsonObject> StructInfo = MakeShared<FJsonObject>();
		StructInfo->SetStringField(TEXT("structType"), Property.StructName);
		StructInfo->SetStringField(TEXT("name"), Property.Name);
		TArray<TSharedPtr<FJsonValue>> Fields;
		for (const FZorvekMCPBridgeFieldInfo& Field : Property.StructFields)
		{
			TSharedPtr<FJsonObject> FieldJson = MakeShared<FJsonObject>();
			FieldJson->SetStringField(TEXT("name"), Field.Name);
			InsertPropertyAsJson(Field, *FieldJson);
			Fields.Add(MakeShared<FJsonValueObject>(FieldJson));
		}
		StructInfo->SetArrayField(TEXT("parameters"), Fields);
		OutJson.SetObjectField(TEXT("structElement"), StructInfo);
	}
}

void ZorvekMCPBridgeVessa::RefreshJsonString(FZorvekMCPBridgeVessaParameterInfo& Parameter, const FZorvekMCPBridgeFieldInfo& Property)
{
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetStringField(TEXT("name"), Parameter.Name);
	Json->SetStringField(TEXT("description"), Parameter.Description);
	InsertPropertyAsJson(Property, *Json);
	Parameter.ParameterTypeJsonString = VessaSerializeCondensed(Json);
}

bool ZorvekMCPBridgeVessa::IsInputParameter(const FZorvekMCPBridgeFieldInfo& Parameter)
{
	using namespace ZorvekMCPBridgeParameterFlags;
	if ((Parameter.Flags & ReturnParm) != 0)
	{
		return false;
	}
	// A native const reference is an OutParm too, but the caller passes it in.
	return (Parameter.Flags & OutParm) == 0 || (Parameter.Flags & ReferenceParm) != 0;
}

bool ZorvekMCPBridgeVessa::IsOutputParameter(const FZorvekMCPBridgeFieldInfo& Parameter)
{
	using namespace ZorvekMCPBridgeParameterFlags;
	return (Parameter.Flags & ReturnParm) != 0 || ((Parameter.Flags & OutParm) != 0 && (Parameter.Flags & ReferenceParm) == 0);
}

const TArray<FString>& ZorvekMCPBridgeVessa::GetDiscoveryMetaDataKeys()
{
	static const TArray<FString> Keys = {
		TEXT("Category"), TEXT("ToolTip"),
		TEXT("VessaAction"), TEXT("ZorvekVessaAction"), TEXT("ZorvikVessaAction"),
		TEXT("VessaQuery"), TEXT("ZorvekVessaQuery"), TEXT("ZorvikVessaQuery"),
	};
	return Keys;
}

void ZorvekMCPBridgeVessa::DiscoverFunction(const FZorvekMCPBridgeFunctionInfo& Function, const TMap<FString, FString>& SavedDescriptions, FZorvekMCPBridgeVessaDefinitionData& Definition)
{
	const FString Category = VessaGetMetaData(Function, TEXT("Category")).Replace(TEXT(" "), TEXT(""));
	const bool bAction = VessaHasAnyMetaData(Function, VessaActionMarkers) || VessaCategoryContainsAny(Category, VessaActionCategories);
	const bool bQuery = !bAction && (VessaHasAnyMetaData(Function, VessaQueryMarkers) || VessaCategoryContainsAny(Category, VessaQueryCategories));
	if (!bAction && !bQuery)
	{
		return;
	}
	const FString Description = VessaGetMetaData(Function, TEXT("ToolTip"));
	if (bAction)
	{
		FZorvekMCPBridgeVessaActionInfo& Action = Definition.Actions[Definition.Actions.AddDefaulted()];
		Action.FunctionName = Function.Name;
		Action.Description = Description;
		for (const FZorvekMCPBridgeFieldInfo& Parameter : Function.Parameters)
		{
			if (IsInputParameter(Parameter))
			{
				Action.ParameterDefinitions.Add(VessaMakeParameter(Parameter, SavedDescriptions, FString::Printf(TEXT("Action_%s_%s"), *Function.Name, *Parameter.Name)));
			}
		}
		return;
	}
	FZorvekMCPBridgeVessaQueryInfo& Query = Definition.Queries[Definition.Queries.AddDefaulted()];
	Query.FunctionName = Function.Name;
	Query.Description = Description;
	for (const FZorvekMCPBridgeFieldInfo& Parameter : Function.Parameters)
	{
		if (IsInputParameter(Parameter))
		{
			Query.ParameterDefinitions.Add(VessaMakeParameter(Parameter, SavedDescriptions, FString::Printf(TEXT("Query_Param_%s_%s"), *Function.Name, *Parameter.Name)));
		}
		else if ((Parameter.Flags & ZorvekMCPBridgeParameterFlags::ReturnParm) == 0)
		{
			Query.ResultDefinitions.Add(VessaMakeParameter(Parameter, SavedDescriptions, FString::Printf(TEXT("Query_Result_%s_%s"), *Function.Name, *Parameter.Name)));
		}
	}
}

void ZorvekMCPBridgeVessa::DiscoverActionsAndQueries(IZorvekMCPBridgeFunctions& Functions, const FString& ClassPath, FZorvekMCPBridgeVessaDefinitionData& Definition)
{
	TMap<FString, FString> SavedDescriptions;
	auto Save = [&SavedDescriptions](const FString& Key, const FString& Description)
	{
		if (!Description.IsEmpty())
		{
			SavedDescriptions.Add(Key, Description);
		}
	};
	for (const FZorvekMCPBridgeVessaActionInfo& Action : Definition.Actions)
	{
		for (const FZorvekMCPBridgeVessaParameterInfo& Parameter : Action.ParameterDefinitions)
		{
			Save(FString::Printf(TEXT("Action_%s_%s"), *Action.FunctionName, *Parameter.Name), Parameter.Description);
		}
	}
	for (const FZorvekMCPBridgeVessaQueryInfo& Query : Definition.Queries)
	{
		for (const FZorvekMCPBridgeVessaParameterInfo& Parameter : Query.ParameterDefinitions)
		{
			Save(FString::Printf(TEXT("Query_Param_%s_%s"), *Query.FunctionName, *Parameter.Name), Parameter.Description);
		}
		for (const FZorvekMCPBridgeVessaParameterInfo& Result : Query.ResultDefinitions)
		{
			Save(FString::Printf(TEXT("Query_Result_%s_%s"), *Query.FunctionName, *Result.Name), Result.Description);
		}
	}
	Definition.Actions.Empty();
	Definition.Queries.Empty();
	TArray<FZorvekMCPBridgeFunctionInfo> ClassFunctions;
	Functions.GetClassFunctions(ClassPath, GetDiscoveryMetaDataKeys(), ClassFunctions);
	for (const FZorvekMCPBridgeFunctionInfo& Function : ClassFunctions)
	{
		DiscoverFunction(Function, SavedDescriptions, Definition);
	}
}

void ZorvekMCPBridgeVessa::RefreshExtension(IZorvekMCPBridgeFunctions& Functions, const FString& ClassPath, FZorvekMCPBridgeVessaDefinitionData& Definition)
{
	if (ClassPath.Equals(ExtensionBaseClassPath, ESearchCase::IgnoreCase))
	{
		return;
	}
	Definition.ExtensionId = ClassPath;
	if (Definition.ExtensionName.IsEmpty())
	{
		Definition.ExtensionName = Functions.GetClassDisplayName(ClassPath);
	}
	DiscoverActionsAndQueries(Functions, ClassPath, Definition);
}

bool ZorvekMCPBridgeVessa::MatchesContext(const FZorvekMCPBridgeVessaDefinitionData& Definition, bool bHasObject, const FString& ObjectClassName)
{
	if (Definition.ContextType == EZorvekMCPBridgeVessaContextKind::Any)
	{
		return true;
	}
	if (!bHasObject)
	{
		return false;
	}
	return Definition.SelectedAssetType.IsEmpty() || ObjectClassName.Contains(Definition.SelectedAssetType, ESearchCase::IgnoreCase);
}

bool ZorvekMCPBridgeVessa::ResolveFunctionName(const IZorvekMCPBridgeFunctions& Functions, const FString& ClassPath, const FZorvekMCPBridgeVessaDefinitionData& Definition,
	const FString& RequestedName, bool bAction, FString& OutFunctionName)
{
	if (bAction)
	{
		for (const FZorvekMCPBridgeVessaActionInfo& Action : Definition.Actions)
		{
			if (Action.FunctionName.Equals(RequestedName, ESearchCase::IgnoreCase))
			{
				OutFunctionName = Action.FunctionName;
				return true;
			}
		}
	}
	else
	{
		for (const FZorvekMCPBridgeVessaQueryInfo& Query : Definition.Queries)
		{
			if (Query.FunctionName.Equals(RequestedName, ESearchCase::IgnoreCase))
			{
				OutFunctionName = Query.FunctionName;
				return true;
			}
		}
	}
	FZorvekMCPBridgeFunctionInfo Function;
	if (Functions.FindFunction(ClassPath, RequestedName, {}, Function))
	{
		OutFunctionName = Function.Name;
		return true;
	}
	return false;
}

bool ZorvekMCPBridgeVessa::BuildParamsFromJson(const FZorvekMCPBridgeFunctionInfo& Function, const TSharedPtr<FJsonObject>& Parameters, IZorvekMCPBridgeParameterBlock& Block)
{
	if (!Parameters.IsValid())
	{
		return true;
	}
	for (int32 Index = 0; Index < Function.Parameters.Num() && Index < Block.GetParameterCount(); ++Index)
	{
		const FZorvekMCPBridgeFieldInfo& Parameter = Function.Parameters[Index];
		if (!IsInputParameter(Parameter))
		{
			continue;
		}
		const TSharedPtr<FJsonValue> Value = Parameters->TryGetField(Parameter.Name);
		if (!Value.IsValid())
		{
			continue;
		}
		bool bConverted = false;
		if (Parameter.FieldClass == EZorvekMCPBridgeFieldClass::Struct && Value->Type == EJson::Object)
		{
			bConverted = Block.ImportJsonObject(Index, Value->AsObject());
		}
		else if ((Parameter.FieldClass == EZorvekMCPBridgeFieldClass::Str || Parameter.FieldClass == EZorvekMCPBridgeFieldClass::Name) && Value->Type == EJson::String)
		{
			bConverted = Block.SetStringValue(Index, Value->AsString());
		}
		else
		{
			// Structs given as anything but an object go through the value converter too: it reads
			// colours from hex and other structs from their text form, and refuses numbers, arrays
			// and booleans, where the object converter would take them as an empty object and
			// leave the parameter silently at its default.
			bConverted = Block.ImportJsonValue(Index, Value);
		}
		if (!bConverted)
		{
			return false;
		}
	}
	return true;
}

TSharedPtr<FJsonValue> ZorvekMCPBridgeVessa::GetJsonValueFromProperty(const FZorvekMCPBridgeFieldInfo& Property, const IZorvekMCPBridgeParameterBlock& Block, int32 ParameterIndex)
{
	if (Property.FieldClass == EZorvekMCPBridgeFieldClass::Name || Property.FieldClass == EZorvekMCPBridgeFieldClass::Text)
	{
		return MakeShared<FJsonValueString>(Block.GetStringValue(ParameterIndex));
	}
	return Block.ExportJsonValue(ParameterIndex);
}

FZorvekMCPBridgeVessaActionOutcome ZorvekMCPBridgeVessa::ExecuteAction(IZorvekMCPBridgeFunctions& Functions, FZorvekMCPBridgeObjectHandle Extension, const FString& ClassPath,
	const FZorvekMCPBridgeVessaDefinitionData& Definition, const TSharedPtr<FJsonObject>& Request)
{
	ZorvekMCPBridgeVessaReports::ClearError();
	ZorvekMCPBridgeVessaReports::ClearResults();

	FString RequestedName;
	if (!Request.IsValid() || !Request->TryGetStringField(TEXT("action_name"), RequestedName) || RequestedName.IsEmpty())
	{
		return FZorvekMCPBridgeVessaActionOutcome::ExtensionFailure(TEXT("Action request is missing action_name."));
	}
	FString FunctionName;
	if (!ResolveFunctionName(Functions, ClassPath, Definition, RequestedName, true, FunctionName))
	{
		return FZorvekMCPBridgeVessaActionOutcome::ExtensionFailure(FString::Printf(TEXT("Action not found: %s"), *RequestedName));
	}
	FZorvekMCPBridgeFunctionInfo Function;
	TUniquePtr<IZorvekMCPBridgeParameterBlock> Block;
	if (Functions.FindFunction(ClassPath, FunctionName, {}, Function))
	{
		Block = Functions.CreateParameterBlock(ClassPath, Function.Name);
	}
	if (!Block.IsValid())
	{
		return FZorvekMCPBridgeVessaActionOutcome::ExtensionFailure(TEXT("Action function not found."));
	}
	const TSharedPtr<FJsonObject>* Parameters = nullptr;
	Request->TryGetObjectField(TEXT("parameters"), Parameters);
	// Marshalling runs before the transaction opens, so a refused call changes nothing.
	if (!BuildParamsFromJson(Function, Parameters ? *Parameters : nullptr, *Block))
	{
		return FZorvekMCPBridgeVessaActionOutcome::ExtensionFailure(TEXT("Could not marshal action parameters from JSON."));
	}
	{
		const FText Title = FText::Format(NSLOCTEXT("ZorvekMCPBridge", "ExecuteVessaAction", "Execute Vessa Action: {0}"), FText::FromString(Function.Name));
		TUniquePtr<IZorvekMCPBridgeTransaction> Transaction = Functions.BeginTransaction(Title);
		Functions.CallFunction(Extension, *Block);
	}
	Block.Reset();

	if (ZorvekMCPBridgeVessaReports::HasError())
	{
		return FZorvekMCPBridgeVessaActionOutcome::ExtensionFailure(ZorvekMCPBridgeVessaReports::GetError());
	}
	return FZorvekMCPBridgeVessaActionOutcome::ExtensionSuccess(ZorvekMCPBridgeVessaReports::GetResults());
}

TSharedPtr<FJsonValue> ZorvekMCPBridgeVessa::ExecuteQuery(IZorvekMCPBridgeFunctions& Functions, FZorvekMCPBridgeObjectHandle Extension, const FString& ClassPath,
	const FZorvekMCPBridgeVessaDefinitionData& Definition, const TSharedPtr<FJsonObject>& Request)
{
	if (!Request.IsValid())
	{
		return VessaQueryError(TEXT("Query request invalid."));
	}
	FString RequestedName;
	if (!Request->TryGetStringField(TEXT("query_name"), RequestedName) || RequestedName.IsEmpty())
	{
		return VessaQueryError(TEXT("Query request is missing query_name."));
	}
	FString FunctionName;
	if (!ResolveFunctionName(Functions, ClassPath, Definition, RequestedName, false, FunctionName))
	{
		return VessaQueryError(FString::Printf(TEXT("Query not found: %s"), *RequestedName));
	}
	FZorvekMCPBridgeFunctionInfo Function;
	TUniquePtr<IZorvekMCPBridgeParameterBlock> Block;
	if (Functions.FindFunction(ClassPath, FunctionName, {}, Function))
	{
		Block = Functions.CreateParameterBlock(ClassPath, Function.Name);
	}
	if (!Block.IsValid())
	{
		return VessaQueryError(TEXT("Query function not found."));
	}
	const TSharedPtr<FJsonObject>* Parameters = nullptr;
	Request->TryGetObjectField(TEXT("parameters"), Parameters);
	if (!BuildParamsFromJson(Function, Parameters ? *Parameters : nullptr, *Block))
	{
		return VessaQueryError(TEXT("Could not marshal query parameters from JSON."));
	}
	Functions.CallFunction(Extension, *Block);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	for (int32 Index = 0; Index < Function.Parameters.Num() && Index < Block->GetParameterCount(); ++Index)
	{
		const FZorvekMCPBridgeFieldInfo& Parameter = Function.Parameters[Index];
		if (IsOutputParameter(Parameter))
		{
			const TSharedPtr<FJsonValue> Value = GetJsonValueFromProperty(Parameter, *Block, Index);
			Result->SetField(Parameter.Name.IsEmpty() ? FString(TEXT("None")) : Parameter.Name, Value.IsValid() ? Value : MakeShared<FJsonValueNull>());
		}
	}
	return MakeShared<FJsonValueObject>(Result);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeVessa::GetExtensionDefinitionJson(const FZorvekMCPBridgeVessaDefinitionData& Definition)
{
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetStringField(TEXT("extension_id"), Definition.ExtensionId);
	Json->SetStringField(TEXT("title"), Definition.ExtensionName);
	Json->SetStringField(TEXT("description"), Definition.ExtensionDescription);
	Json->SetStringField(TEXT("contextType"), GetContextTypeName(Definition.ContextType));
	Json->SetStringField(TEXT("assetType"), Definition.SelectedAssetType);
	Json->SetBoolField(TEXT("is_system_extension"), Definition.bIsSystemExtension);
	TArray<TSharedPtr<FJsonValue>> Actions;
	for (const FZorvekMCPBridgeVessaActionInfo& Action : Definition.Actions)
	{
		TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetStringField(TEXT("name"), Action.FunctionName);
		Entry->SetStringField(TEXT("description"), Action.Description);
		Entry->SetArrayField(TEXT("parameters"), VessaParametersJson(Action.ParameterDefinitions));
		Actions.Add(MakeShared<FJsonValueObject>(Entry));
	}
	Json->SetArrayField(TEXT("actions"), Actions);
	TArray<TSharedPtr<FJsonValue>> Queries;
	for (const FZorvekMCPBridgeVessaQueryInfo& Query : Definition.Queries)
	{
		TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetStringField(TEXT("name"), Query.FunctionName);
		Entry->SetStringField(TEXT("description"), Query.Description);
		Entry->SetArrayField(TEXT("parameters"), VessaParametersJson(Query.ParameterDefinitions));
		Entry->SetArrayField(TEXT("returnParameters"), VessaParametersJson(Query.ResultDefinitions));
		Queries.Add(MakeShared<FJsonValueObject>(Entry));
	}
	Json->SetArrayField(TEXT("queries"), Queries);
	return Json;
}
