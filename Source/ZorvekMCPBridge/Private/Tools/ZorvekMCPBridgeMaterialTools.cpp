#include "Tools/ZorvekMCPBridgeMaterialTools.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Assets/ZorvekMCPBridgeMaterialAuthoring.h"
#include "Assets/ZorvekMCPBridgeMaterialReproAssets.h"
#include "Assets/ZorvekMCPBridgePropertyExport.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"

namespace
{
	// What the engine refuses in an object name (INVALID_OBJECTNAME_CHARACTERS). Not in the
	// reference notes; check against the engine (CoreUObject's UObject/NameTypes.h).
	const TCHAR* const InvalidMaterialObjectNameCharacters = TEXT("\"' ,/.:|&!~\n\r\t@#(){}[]=;^%$`");

	bool HasInvalidMaterialObjectNameCharacter(const FString& Name)
	{
		for (const TCHAR* Character = InvalidMaterialObjectNameCharacters; *Character; ++Character)
		{
			int32 Index = INDEX_NONE;
			if (Name.FindChar(*Character, Index))
			{
				return true;
			}
		}
		return false;
	}

	TSharedPtr<FJsonObject> FailMaterialTool(const FString& Message)
	{
		return ZorvekMCPBridgeTools::MakeTextToolResult(Message, true);
	}

	TSharedPtr<FJsonObject> FailToLoadMaterialFor(const TCHAR* ToolName)
	{
		return FailMaterialTool(FString::Printf(TEXT("Could not load Material for %s."), ToolName));
	}

	// What a tool that edits a material works on: the editor, the material and its asset path, or
	// the result to answer with when there is no editor or no such material.
	struct FMaterialToolTarget
	{
		IZorvekMCPBridgeEditorPort* Port = nullptr;
		FZorvekMCPBridgeObjectHandle Material;
		FString AssetPath;
		TSharedPtr<FJsonObject> Failure;
	};

	FMaterialToolTarget LoadMaterialForTool(FZorvekMCPBridgeToolContext& Context, const TCHAR* ToolName, const FString& MaterialNameOrPath)
	{
		FMaterialToolTarget Loaded;
		if (!Context.EditorPort)
		{
			Loaded.Failure = ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
			return Loaded;
		}
		Loaded.Port = Context.EditorPort;
		Loaded.Material = ZorvekMCPBridgeMaterialAuthoring::LoadMaterial(*Loaded.Port, MaterialNameOrPath, Loaded.AssetPath);
		if (!Loaded.Material.IsValid())
		{
			Loaded.Failure = FailToLoadMaterialFor(ToolName);
		}
		return Loaded;
	}

	TArray<TSharedPtr<FJsonValue>> MakeAliasArray(const TArray<FString>& Texts)
	{
		TArray<TSharedPtr<FJsonValue>> Values;
		for (const FString& Text : Texts)
		{
			Values.Add(MakeShared<FJsonValueString>(Text));
		}
		return Values;
	}

	// A scalar argument as import text: a JSON string as it stands, a number or bool as its text.
	// False for a missing key, null, objects and arrays.
	bool ReadMaterialValueText(const TSharedPtr<FJsonValue>& Value, FString& OutText)
	{
		if (!Value.IsValid() || (Value->Type != EJson::String && Value->Type != EJson::Number && Value->Type != EJson::Boolean))
		{
			return false;
		}
		return Value->TryGetString(OutText);
	}

	FZorvekMCPBridgeMaterialSnapshot ReadMaterialSnapshot(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Material)
	{
		FZorvekMCPBridgeMaterialSnapshot Snapshot;
		Port.GetMaterials().ReadMaterial(Material, TArray<FString>(), Snapshot);
		return Snapshot;
	}

	struct FCreateMaterialParams
	{
		FString PackagePath;
		FString AssetName;

		static FCreateMaterialParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FCreateMaterialParams Params;
			Params.PackagePath = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("PackagePath"),
				ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("InPackagePath"), FString())).TrimStartAndEnd();
			Params.AssetName = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("AssetName"),
				ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("InAssetName"), FString())).TrimStartAndEnd();
			return Params;
		}
	};

	struct FMaterialFindClassesParams
	{
		FString Query;
		bool bSupportedOnly = false;
		int32 Limit = ZorvekMCPBridgeMaterialAuthoring::DefaultFindLimit;

		static FMaterialFindClassesParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FMaterialFindClassesParams Params;
			Params.Query = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("Query"), FString());
			Params.bSupportedOnly = ZorvekMCPBridgeToolArguments::ReadBool(Arguments, TEXT("SupportedOnly"), false);
			Params.Limit = ZorvekMCPBridgeToolArguments::ReadLimit(Arguments, TEXT("Limit"), ZorvekMCPBridgeMaterialAuthoring::DefaultFindLimit);
			return Params;
		}
	};

	struct FMaterialResolveClassParams
	{
		FString Query;
		bool bRequireSupported = false;

		static FMaterialResolveClassParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FMaterialResolveClassParams Params;
			Params.Query = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("Query"), FString());
			Params.bRequireSupported = ZorvekMCPBridgeToolArguments::ReadBool(Arguments, TEXT("RequireSupported"), false);
			return Params;
		}
	};

	struct FMaterialPropertyValueArgument
	{
		FString Name;
		FString Text;
		bool bIsScalar = false;
	};

	struct FMaterialAddExpressionParams
	{
		FString MaterialNameOrPath;
		FString ExpressionClass;
		FString NodeName;
		FString ParameterName;
		FString DefaultValue;
		bool bHasDefaultValue = false;
		FString TexturePath;
		FString Description;
		TArray<FMaterialPropertyValueArgument> PropertyValues;
		int32 NodePosX = 0;
		int32 NodePosY = 0;

		static FMaterialAddExpressionParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FMaterialAddExpressionParams Params;
			Params.MaterialNameOrPath = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("MaterialNameOrPath"), FString());
			Params.ExpressionClass = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("ExpressionClass"), FString()).TrimStartAndEnd();
			Params.NodeName = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("NodeName"), FString()).TrimStartAndEnd();
			Params.ParameterName = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("ParameterName"), FString());
			Params.DefaultValue = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("DefaultValue"), FString());
			Params.bHasDefaultValue = !Params.DefaultValue.IsEmpty();
			Params.TexturePath = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("TexturePath"), FString()).TrimStartAndEnd();
			Params.Description = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("Description"), FString());
			Params.NodePosX = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("NodePosX"), 0);
			Params.NodePosY = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("NodePosY"), 0);
			const TSharedPtr<FJsonObject>* Values = nullptr;
			if (Arguments.IsValid() && Arguments->TryGetObjectField(TEXT("PropertyValues"), Values))
			{
				for (const TPair<FString, TSharedPtr<FJsonValue>>& Member : (*Values)->Values)
				{
					FMaterialPropertyValueArgument Value;
					Value.Name = Member.Key;
					Value.bIsScalar = ReadMaterialValueText(Member.Value, Value.Text);
					Params.PropertyValues.Add(Value);
				}
			}
			return Params;
		}
	};

	struct FMaterialSetPropertyParams
	{
		FString MaterialNameOrPath;
		FString NodeGuid;
		FString PropertyName;
		FString Value;
		bool bHasValue = false;

		static FMaterialSetPropertyParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FMaterialSetPropertyParams Params;
			Params.MaterialNameOrPath = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("MaterialNameOrPath"), FString());
			Params.NodeGuid = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("NodeGuid"), FString()).TrimStartAndEnd();
			Params.PropertyName = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("PropertyName"), FString()).TrimStartAndEnd();
			// An empty string is a value (an empty FString); only a missing or non-scalar one is not.
			Params.bHasValue = ReadMaterialValueText(Arguments.IsValid() ? Arguments->TryGetField(TEXT("Value")) : nullptr, Params.Value);
			return Params;
		}
	};

	struct FMaterialConnectParams
	{
		FString MaterialNameOrPath;
		FString SourceNodeGuid;
		FString TargetNodeGuid;
		FString TargetInputName;
		FString RootInputName;
		int32 SourceOutputIndex = 0;

		static FMaterialConnectParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FMaterialConnectParams Params;
			Params.MaterialNameOrPath = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("MaterialNameOrPath"), FString());
			Params.SourceNodeGuid = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("SourceNodeGuid"), FString()).TrimStartAndEnd();
			Params.TargetNodeGuid = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("TargetNodeGuid"), FString()).TrimStartAndEnd();
			// Input names are taken exactly as given: the input of Clamp and OneMinus is "Input".
			Params.TargetInputName = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("TargetInputName"), FString());
			Params.RootInputName = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("RootInputName"), FString());
			Params.SourceOutputIndex = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("SourceOutputIndex"), 0);
			return Params;
		}
	};

	// The output index must name one of the source's outputs: the engine's Connect indexes the
	// outputs array with it unchecked.
	bool CheckMaterialSourceOutputIndex(const FZorvekMCPBridgeMaterialExpressionSnapshot& Source, int32 OutputIndex, FString& OutError)
	{
		if (OutputIndex >= 0 && OutputIndex < Source.Outputs.Num())
		{
			return true;
		}
		OutError = FString::Printf(TEXT("Source output index %d is out of range: the source expression has %d output(s)."), OutputIndex, Source.Outputs.Num());
		return false;
	}

	// Every import of material_add_expression, into the new expression that is not yet in the
	// graph; the first failure stops and is returned.
	bool ApplyNewExpressionValues(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Expression, const FMaterialAddExpressionParams& Params, FZorvekMCPBridgeObjectHandle Texture, TArray<FString>& OutAliases, FString& OutError)
	{
		IZorvekMCPBridgeMaterials& Materials = Port.GetMaterials();
		if (!Params.Description.IsEmpty())
		{
			Materials.SetDescription(Expression, Params.Description);
		}
		if (!Params.ParameterName.IsEmpty())
		{
			Materials.SetParameterName(Expression, Params.ParameterName);
		}
		if (Params.bHasDefaultValue)
		{
			FString Alias;
			const FString Property = ZorvekMCPBridgeMaterialAuthoring::GetDefaultValueProperty(Params.ExpressionClass, Alias);
			if (!ZorvekMCPBridgeAssets::ImportPropertyText(Port, Expression, Property, Params.DefaultValue, OutError))
			{
				return false;
			}
			if (!Alias.IsEmpty())
			{
				OutAliases.Add(Alias);
			}
		}
		for (const FMaterialPropertyValueArgument& Value : Params.PropertyValues)
		{
			if (!ZorvekMCPBridgeAssets::ImportPropertyText(Port, Expression, Value.Name, Value.Text, OutError))
			{
				return false;
			}
		}
		if (Texture.IsValid())
		{
			if (!Port.GetReflection().FindProperty(Expression, TEXT("Texture")).IsValid())
			{
				OutError = FString::Printf(TEXT("Expression class '%s' does not expose a Texture property."), *Params.ExpressionClass);
				return false;
			}
			if (!ZorvekMCPBridgeAssets::ImportPropertyText(Port, Expression, TEXT("Texture"), Port.GetObjects().GetIdentity(Texture).ObjectPath, OutError))
			{
				return false;
			}
		}
		return true;
	}

	FString MakeTextureObjectPath(const FString& Path)
	{
		int32 DotIndex = INDEX_NONE;
		return Path.FindChar(TEXT('.'), DotIndex) ? Path : ZorvekMCPBridgeAssets::MakeAssetObjectPath(Path);
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialTools::HandleCreateMaterial(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("material_create"));
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	const FCreateMaterialParams Params = FCreateMaterialParams::Read(Arguments);
	if (Params.PackagePath.IsEmpty() || Params.AssetName.IsEmpty())
	{
		return FailMaterialTool(TEXT("material_create requires PackagePath and AssetName."));
	}

	FString PackagePath = Params.PackagePath;
	while (PackagePath.Len() > 1 && PackagePath.EndsWith(TEXT("/")))
	{
		PackagePath.LeftChopInline(1);
	}
	const FString PackageName = PackagePath + TEXT("/") + Params.AssetName;
	const FString ObjectPath = PackageName + TEXT(".") + Params.AssetName;
	FString Reason;
	if (HasInvalidMaterialObjectNameCharacter(Params.AssetName))
	{
		Reason = FString::Printf(TEXT("asset name '%s' contains a character object names may not hold."), *Params.AssetName);
	}
	else if (!Port.GetAssetAuthoring().IsValidLongPackageName(PackageName, Reason))
	{
		Reason = FString::Printf(TEXT("'%s' is not a valid package name: %s"), *PackageName, *Reason);
	}
	else if (!Port.GetAssetRegistry().GetAssetsByPackageName(PackageName).IsEmpty() || Port.GetObjects().FindObject(ObjectPath).IsValid())
	{
		// In memory, creating an object where one exists would replace it in place.
		Reason = FString::Printf(TEXT("an asset already exists at %s."), *PackageName);
	}
	FZorvekMCPBridgeObjectHandle Material;
	if (Reason.IsEmpty())
	{
		Material = Port.GetMaterials().CreateMaterial(PackageName, Params.AssetName, Reason);
	}
	if (!Material.IsValid())
	{
		return FailMaterialTool(FString::Printf(TEXT("Could not create Material: %s"), *Reason));
	}

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), PackageName);
	Result->SetStringField(TEXT("object_path"), Port.GetObjects().GetIdentity(Material).ObjectPath);
	Result->SetObjectField(TEXT("material"), ZorvekMCPBridgeMaterialAuthoring::ReadMaterialObject(Port, Material));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialTools::HandleFindExpressionClasses(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("material_find_expression_classes"));
	}
	const FMaterialFindClassesParams Params = FMaterialFindClassesParams::Read(Arguments);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(ZorvekMCPBridgeMaterialAuthoring::FindExpressionClasses(Context.EditorPort->GetObjects(), Params.Query, Params.bSupportedOnly, Params.Limit), false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialTools::HandleResolveExpressionClass(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("material_resolve_expression_class"));
	}
	const FMaterialResolveClassParams Params = FMaterialResolveClassParams::Read(Arguments);
	if (Params.Query.TrimStartAndEnd().IsEmpty())
	{
		return FailMaterialTool(TEXT("material_resolve_expression_class requires Query."));
	}
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(ZorvekMCPBridgeMaterialAuthoring::ResolveExpressionClass(Context.EditorPort->GetObjects(), Params.Query, Params.bRequireSupported), false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialTools::HandleAddExpression(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const FMaterialAddExpressionParams Params = FMaterialAddExpressionParams::Read(Arguments);
	// Everything that can be checked is checked before the material changes.
	const FMaterialToolTarget Loaded = LoadMaterialForTool(Context, TEXT("material_add_expression"), Params.MaterialNameOrPath);
	if (Loaded.Failure.IsValid())
	{
		return Loaded.Failure;
	}
	IZorvekMCPBridgeEditorPort& Port = *Loaded.Port;
	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
	IZorvekMCPBridgeMaterials& Materials = Port.GetMaterials();
	const FZorvekMCPBridgeObjectHandle Material = Loaded.Material;
	const FString& AssetPath = Loaded.AssetPath;
	if (!ZorvekMCPBridgeMaterialAuthoring::IsAllowlistedExpressionClass(Params.ExpressionClass))
	{
		return FailMaterialTool(FString::Printf(TEXT("Unsupported material expression class '%s'. Use an allowlisted canonical class name."), *Params.ExpressionClass));
	}
	const FString ClassPath = ZorvekMCPBridgeMaterialAuthoring::MakeExpressionClassPath(Params.ExpressionClass);
	FZorvekMCPBridgeTypeInfo Class;
	if (!Objects.LoadClass(ClassPath, Class) || (Class.ClassFlags & ZorvekMCPBridgeClassFlags::Abstract) != 0)
	{
		return FailMaterialTool(FString::Printf(TEXT("Could not load material expression class: %s"), *ClassPath));
	}
	if (!Params.NodeName.IsEmpty())
	{
		const FString MaterialPath = Objects.GetIdentity(Material).ObjectPath;
		if (HasInvalidMaterialObjectNameCharacter(Params.NodeName))
		{
			return FailMaterialTool(FString::Printf(TEXT("Could not create material expression: NodeName '%s' contains a character object names may not hold."), *Params.NodeName));
		}
		// The engine would replace an object of that name in place, or stop on a class mismatch.
		if (Objects.FindObject(MaterialPath + TEXT(":") + Params.NodeName).IsValid())
		{
			return FailMaterialTool(FString::Printf(TEXT("Could not create material expression: %s already holds an object named '%s'."), *MaterialPath, *Params.NodeName));
		}
	}
	if (!Params.ParameterName.IsEmpty() && !Materials.IsParameterExpressionClass(ClassPath))
	{
		return FailMaterialTool(FString::Printf(TEXT("Expression class '%s' does not support ParameterName."), *Params.ExpressionClass));
	}
	for (const FMaterialPropertyValueArgument& Value : Params.PropertyValues)
	{
		if (Value.Name.TrimStartAndEnd().IsEmpty())
		{
			return FailMaterialTool(TEXT("PropertyValues contains an empty property name."));
		}
		if (!Value.bIsScalar)
		{
			return FailMaterialTool(FString::Printf(TEXT("PropertyValues member '%s' must be a string, number or bool."), *Value.Name));
		}
	}
	FZorvekMCPBridgeObjectHandle Texture;
	if (!Params.TexturePath.IsEmpty())
	{
		Texture = Objects.LoadObject(MakeTextureObjectPath(Params.TexturePath));
		if (!Objects.IsA(Texture, ZorvekMCPBridgeMaterialAuthoring::TextureClassPath))
		{
			return FailMaterialTool(FString::Printf(TEXT("Could not load texture: %s"), *Params.TexturePath));
		}
	}

	// The expression takes its values before it joins the graph, so a failed import throws it
	// away and leaves the material as it was.
	const FZorvekMCPBridgeObjectHandle Expression = Materials.NewExpression(Material, ClassPath, Params.NodeName);
	if (!Expression.IsValid())
	{
		return FailMaterialTool(FString::Printf(TEXT("Could not create material expression: %s"), *ClassPath));
	}
	TArray<FString> Aliases;
	FString Error;
	if (!ApplyNewExpressionValues(Port, Expression, Params, Texture, Aliases, Error))
	{
		Materials.DiscardExpression(Expression);
		return FailMaterialTool(Error);
	}
	Materials.AddExpression(Material, Expression, Params.NodePosX, Params.NodePosY);
	Materials.NotifyMaterialEdited(Material);

	FString NodeGuid;
	for (const FZorvekMCPBridgeMaterialExpressionSnapshot& Snapshot : ReadMaterialSnapshot(Port, Material).Expressions)
	{
		if (Snapshot.Expression == Expression)
		{
			NodeGuid = Snapshot.NodeGuid;
		}
	}
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), AssetPath);
	const TSharedPtr<FJsonObject> Node = ZorvekMCPBridgeMaterialAuthoring::ReadExpressionNode(Port, Material, NodeGuid);
	Result->SetObjectField(TEXT("expression"), Node.IsValid() ? Node : MakeShared<FJsonObject>());
	Result->SetStringField(TEXT("node_guid"), NodeGuid);
	Result->SetStringField(TEXT("expression_class"), Params.ExpressionClass);
	Result->SetArrayField(TEXT("property_aliases_applied"), MakeAliasArray(Aliases));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialTools::HandleSetExpressionProperty(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const FMaterialSetPropertyParams Params = FMaterialSetPropertyParams::Read(Arguments);
	const FMaterialToolTarget Loaded = LoadMaterialForTool(Context, TEXT("material_set_expression_property"), Params.MaterialNameOrPath);
	if (Loaded.Failure.IsValid())
	{
		return Loaded.Failure;
	}
	IZorvekMCPBridgeEditorPort& Port = *Loaded.Port;
	const FZorvekMCPBridgeObjectHandle Material = Loaded.Material;
	const FString& AssetPath = Loaded.AssetPath;
	if (Params.NodeGuid.IsEmpty())
	{
		return FailMaterialTool(TEXT("material_set_expression_property requires NodeGuid."));
	}
	if (Params.PropertyName.IsEmpty())
	{
		return FailMaterialTool(TEXT("material_set_expression_property requires PropertyName."));
	}
	if (!Params.bHasValue)
	{
		return FailMaterialTool(TEXT("material_set_expression_property requires Value."));
	}
	const FZorvekMCPBridgeMaterialSnapshot Snapshot = ReadMaterialSnapshot(Port, Material);
	const FZorvekMCPBridgeMaterialExpressionSnapshot* Expression = ZorvekMCPBridgeMaterialAuthoring::FindExpressionByGuid(Snapshot, Params.NodeGuid);
	if (!Expression)
	{
		return FailMaterialTool(FString::Printf(TEXT("Could not resolve material expression by NodeGuid '%s'."), *Params.NodeGuid));
	}

	FString Alias;
	const FString EffectiveName = ZorvekMCPBridgeMaterialAuthoring::ApplySetPropertyAlias(Expression->ClassName, Params.PropertyName, Alias);
	FString Error;
	if (!ZorvekMCPBridgeMaterialAuthoring::ImportPropertyTextOrRestore(Port, Expression->Expression, EffectiveName, Params.Value, Error))
	{
		return FailMaterialTool(Error);
	}
	Port.GetMaterials().NotifyMaterialEdited(Material);

	TArray<FString> Aliases;
	if (!Alias.IsEmpty())
	{
		Aliases.Add(Alias);
	}
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), AssetPath);
	Result->SetStringField(TEXT("node_guid"), Expression->NodeGuid);
	Result->SetStringField(TEXT("expression_class"), Expression->ClassName);
	Result->SetStringField(TEXT("property_name"), Params.PropertyName);
	Result->SetStringField(TEXT("effective_property_name"), EffectiveName);
	Result->SetStringField(TEXT("imported_value"), Params.Value);
	Result->SetArrayField(TEXT("property_aliases_applied"), MakeAliasArray(Aliases));
	const TSharedPtr<FJsonObject> Node = ZorvekMCPBridgeMaterialAuthoring::ReadExpressionNode(Port, Material, Expression->NodeGuid);
	Result->SetObjectField(TEXT("expression"), Node.IsValid() ? Node : MakeShared<FJsonObject>());
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialTools::HandleConnectExpressions(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const FMaterialConnectParams Params = FMaterialConnectParams::Read(Arguments);
	const FMaterialToolTarget Loaded = LoadMaterialForTool(Context, TEXT("material_connect_expressions"), Params.MaterialNameOrPath);
	if (Loaded.Failure.IsValid())
	{
		return Loaded.Failure;
	}
	IZorvekMCPBridgeEditorPort& Port = *Loaded.Port;
	const FZorvekMCPBridgeObjectHandle Material = Loaded.Material;
	const FString& AssetPath = Loaded.AssetPath;
	const FZorvekMCPBridgeMaterialSnapshot Snapshot = ReadMaterialSnapshot(Port, Material);
	const FZorvekMCPBridgeMaterialExpressionSnapshot* Source = ZorvekMCPBridgeMaterialAuthoring::FindExpressionByGuid(Snapshot, Params.SourceNodeGuid);
	const FZorvekMCPBridgeMaterialExpressionSnapshot* Target = ZorvekMCPBridgeMaterialAuthoring::FindExpressionByGuid(Snapshot, Params.TargetNodeGuid);
	if (!Source || !Target)
	{
		return FailMaterialTool(TEXT("Could not resolve source or target material expression by GUID."));
	}
	const FString MissingInput = FString::Printf(TEXT("Target input '%s' was not found. Available inputs: %s"), *Params.TargetInputName, *ZorvekMCPBridgeMaterialAuthoring::DescribeAvailableInputs(*Target));
	const int32 InputIndex = ZorvekMCPBridgeMaterialAuthoring::FindInputIndex(*Target, Params.TargetInputName);
	if (InputIndex == INDEX_NONE)
	{
		return FailMaterialTool(MissingInput);
	}
	FString Error;
	if (!CheckMaterialSourceOutputIndex(*Source, Params.SourceOutputIndex, Error))
	{
		return FailMaterialTool(Error);
	}
	if (!Port.GetMaterials().ConnectExpressionInput(Source->Expression, Params.SourceOutputIndex, Target->Expression, InputIndex))
	{
		return FailMaterialTool(MissingInput);
	}
	Port.GetMaterials().NotifyMaterialEdited(Material);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), AssetPath);
	Result->SetStringField(TEXT("source_node_guid"), Source->NodeGuid);
	Result->SetStringField(TEXT("target_node_guid"), Target->NodeGuid);
	Result->SetStringField(TEXT("target_input_name"), Params.TargetInputName);
	Result->SetNumberField(TEXT("source_output_index"), Params.SourceOutputIndex);
	Result->SetBoolField(TEXT("connected"), true);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialTools::HandleConnectRoot(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const FMaterialConnectParams Params = FMaterialConnectParams::Read(Arguments);
	const FMaterialToolTarget Loaded = LoadMaterialForTool(Context, TEXT("material_connect_root"), Params.MaterialNameOrPath);
	if (Loaded.Failure.IsValid())
	{
		return Loaded.Failure;
	}
	IZorvekMCPBridgeEditorPort& Port = *Loaded.Port;
	const FZorvekMCPBridgeObjectHandle Material = Loaded.Material;
	const FString& AssetPath = Loaded.AssetPath;
	const FZorvekMCPBridgeMaterialSnapshot Snapshot = ReadMaterialSnapshot(Port, Material);
	const FZorvekMCPBridgeMaterialExpressionSnapshot* Source = ZorvekMCPBridgeMaterialAuthoring::FindExpressionByGuid(Snapshot, Params.SourceNodeGuid);
	if (!Source)
	{
		return FailMaterialTool(TEXT("Could not resolve source material expression by GUID."));
	}
	const FString UnavailableRoot = FString::Printf(TEXT("Unsupported or unavailable material root input '%s'."), *Params.RootInputName);
	if (!ZorvekMCPBridgeMaterialAuthoring::IsAuthorableRootInput(Params.RootInputName))
	{
		return FailMaterialTool(UnavailableRoot);
	}
	FString Error;
	if (!CheckMaterialSourceOutputIndex(*Source, Params.SourceOutputIndex, Error))
	{
		return FailMaterialTool(Error);
	}
	if (!Port.GetMaterials().ConnectRootInput(Material, Params.RootInputName, Source->Expression, Params.SourceOutputIndex))
	{
		return FailMaterialTool(UnavailableRoot);
	}
	Port.GetMaterials().NotifyMaterialEdited(Material);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), AssetPath);
	Result->SetStringField(TEXT("source_node_guid"), Source->NodeGuid);
	Result->SetStringField(TEXT("root_input_name"), Params.RootInputName);
	Result->SetNumberField(TEXT("source_output_index"), Params.SourceOutputIndex);
	Result->SetBoolField(TEXT("connected"), true);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialTools::HandleUpdateMaterial(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const FMaterialToolTarget Loaded = LoadMaterialForTool(Context, TEXT("material_update"),
		ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("MaterialNameOrPath"), FString()));
	if (Loaded.Failure.IsValid())
	{
		return Loaded.Failure;
	}
	Loaded.Port->GetMaterials().NotifyMaterialEdited(Loaded.Material);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
	Result->SetObjectField(TEXT("material"), ZorvekMCPBridgeMaterialAuthoring::ReadMaterialObject(*Loaded.Port, Loaded.Material));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialTools::HandleCreateMaterialReproAssets(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("unreal_create_material_repro_assets"));
	}
	ZorvekMCPBridgeMaterialReproAssets::FParams Params;
	Params.PackagePath = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("PackagePath"), FString()).TrimStartAndEnd();
	const FString Prefix = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("AssetPrefix"), FString()).TrimStartAndEnd();
	if (!Prefix.IsEmpty())
	{
		Params.AssetPrefix = Prefix;
	}
	Params.Now = FDateTime::Now();
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(ZorvekMCPBridgeMaterialReproAssets::CreateMaterialReproAssets(*Context.EditorPort, Params), false);
}
