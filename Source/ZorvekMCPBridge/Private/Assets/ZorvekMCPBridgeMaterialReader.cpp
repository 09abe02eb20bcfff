#include "Assets/ZorvekMCPBridgeAssetReaders.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Assets/ZorvekMCPBridgePropertyExport.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

namespace
{
	const TCHAR* const MaterialClassPath = TEXT("/Script/Engine.Material");
	const TCHAR* const MaterialInstanceClassPath = TEXT("/Script/Engine.MaterialInstance");
	const TCHAR* const MaterialFunctionInterfaceClassPath = TEXT("/Script/Engine.MaterialFunctionInterface");
	const TCHAR* const MaterialInterfaceClassPath = TEXT("/Script/Engine.MaterialInterface");
	constexpr int32 ExpressionPropertyLimit = 40;
	// Parent chains are short; the bound only guards against a chain that loops.
	constexpr int32 MaxParentChainLength = 32;

	struct FMaterialKind
	{
		const TCHAR* ClassPath;
		const TCHAR* AssetKind;
	};
	// Tested in this order; the first class the asset is a member of decides.
	const FMaterialKind MaterialKinds[] = {
		{MaterialClassPath, TEXT("material")},
		{TEXT("/Script/Engine.MaterialInstanceConstant"), TEXT("material_instance_constant")},
		{MaterialInstanceClassPath, TEXT("material_instance")},
		{TEXT("/Script/Engine.MaterialFunction"), TEXT("material_function")},
		{MaterialFunctionInterfaceClassPath, TEXT("material_function_interface")},
		{MaterialInterfaceClassPath, TEXT("material_object")}};

	const TCHAR* const RootInputNames[] = {
		TEXT("BaseColor"),
		TEXT("Metallic"),
		TEXT("Specular"),
		TEXT("Roughness"),
		TEXT("EmissiveColor"),
		TEXT("Opacity"),
		TEXT("Normal"),
		TEXT("MaterialAttributes")};

	// One parameter array of a material instance: where its entries hold their value, and which
	// properties of the parent material's parameter expression hold the default.
	struct FParameterArray
	{
		const TCHAR* SourceProperty;
		const TCHAR* ResultKey;
		const TCHAR* ParameterKind;
		const TCHAR* ValueFields[2];
		const TCHAR* ExpressionDefaultFields[2];
	};
	const FParameterArray ParameterArrays[] = {
		{TEXT("ScalarParameterValues"), TEXT("scalar_parameters"), TEXT("scalar"), {TEXT("ParameterValue"), nullptr}, {TEXT("DefaultValue"), nullptr}},
		{TEXT("VectorParameterValues"), TEXT("vector_parameters"), TEXT("vector"), {TEXT("ParameterValue"), nullptr}, {TEXT("DefaultValue"), nullptr}},
		{TEXT("TextureParameterValues"), TEXT("texture_parameters"), TEXT("texture"), {TEXT("ParameterValue"), nullptr}, {TEXT("Texture"), nullptr}},
		{TEXT("RuntimeVirtualTextureParameterValues"), TEXT("runtime_virtual_texture_parameters"), TEXT("runtime_virtual_texture"), {TEXT("ParameterValue"), nullptr}, {TEXT("VirtualTexture"), nullptr}},
		{TEXT("SparseVolumeTextureParameterValues"), TEXT("sparse_volume_texture_parameters"), TEXT("sparse_volume_texture"), {TEXT("ParameterValue"), nullptr}, {TEXT("SparseVolumeTexture"), nullptr}},
		{TEXT("FontParameterValues"), TEXT("font_parameters"), TEXT("font"), {TEXT("FontValue"), TEXT("FontPage")}, {TEXT("Font"), TEXT("FontTexturePage")}}};

	void SetMaskFields(const TSharedPtr<FJsonObject>& Target, const FZorvekMCPBridgeMaterialMask& Mask)
	{
		Target->SetNumberField(TEXT("mask"), Mask.Mask);
		Target->SetNumberField(TEXT("mask_r"), Mask.MaskR);
		Target->SetNumberField(TEXT("mask_g"), Mask.MaskG);
		Target->SetNumberField(TEXT("mask_b"), Mask.MaskB);
		Target->SetNumberField(TEXT("mask_a"), Mask.MaskA);
	}

	TSharedPtr<FJsonObject> MakeInputNode(const FZorvekMCPBridgeMaterialInputSnapshot& Input)
	{
		TSharedPtr<FJsonObject> Node = MakeShared<FJsonObject>();
		Node->SetStringField(TEXT("input_name"), Input.InputName);
		Node->SetBoolField(TEXT("connected"), Input.bConnected);
		Node->SetNumberField(TEXT("output_index"), Input.OutputIndex);
		Node->SetStringField(TEXT("raw_input_name"), Input.RawInputName);
		SetMaskFields(Node, Input.Mask);
		if (Input.bConnected)
		{
			Node->SetStringField(TEXT("source_node_guid"), Input.SourceNodeGuid);
			Node->SetStringField(TEXT("source_node_title"), Input.SourceNodeTitle);
			Node->SetStringField(TEXT("source_node_class"), Input.SourceNodeClass);
		}
		return Node;
	}

	// One record per wire: which output feeds which input.
	TSharedPtr<FJsonValue> MakeConnection(const FZorvekMCPBridgeMaterialInputSnapshot& Input, const FString& TargetKind, const FString& TargetNodeGuid, int32 TargetInputIndex)
	{
		TSharedPtr<FJsonObject> Connection = MakeShared<FJsonObject>();
		Connection->SetStringField(TEXT("source_node_guid"), Input.SourceNodeGuid);
		Connection->SetStringField(TEXT("source_node_title"), Input.SourceNodeTitle);
		Connection->SetNumberField(TEXT("source_output_index"), Input.OutputIndex);
		Connection->SetStringField(TEXT("target"), TargetKind);
		if (!TargetNodeGuid.IsEmpty())
		{
			Connection->SetStringField(TEXT("target_node_guid"), TargetNodeGuid);
		}
		Connection->SetStringField(TEXT("target_input_name"), Input.InputName);
		Connection->SetNumberField(TEXT("target_input_index"), TargetInputIndex);
		return MakeShared<FJsonValueObject>(Connection);
	}

	class FMaterialReader
	{
	public:
		FMaterialReader(IZorvekMCPBridgeEditorPort& InPort, TArray<TSharedPtr<FJsonValue>>& InPartialFailures)
			: Port(InPort)
			, Objects(InPort.GetObjects())
			, Reflection(InPort.GetReflection())
			, PartialFailures(InPartialFailures)
		{
		}

		void AddMaterialGraph(const TSharedPtr<FJsonObject>& Result, FZorvekMCPBridgeObjectHandle Material)
		{
			FZorvekMCPBridgeMaterialSnapshot Snapshot;
			TArray<FString> RootProperties;
			for (const TCHAR* Name : RootInputNames)
			{
				RootProperties.Add(Name);
			}
			Port.GetMaterials().ReadMaterial(Material, RootProperties, Snapshot);

			Result->SetStringField(TEXT("material_domain"), Snapshot.MaterialDomain);
			Result->SetStringField(TEXT("blend_mode"), Snapshot.BlendMode);
			Result->SetBoolField(TEXT("two_sided"), Snapshot.bTwoSided);
			Result->SetBoolField(TEXT("use_material_attributes"), Snapshot.bUseMaterialAttributes);

			TArray<TSharedPtr<FJsonValue>> Connections;
			TArray<TSharedPtr<FJsonValue>> RootInputs;
			for (int32 Index = 0; Index < Snapshot.RootInputs.Num(); ++Index)
			{
				const FZorvekMCPBridgeMaterialInputSnapshot& Input = Snapshot.RootInputs[Index];
				TSharedPtr<FJsonObject> Node = MakeInputNode(Input);
				Node->SetStringField(TEXT("root_property"), Input.InputName);
				Node->SetStringField(TEXT("target"), TEXT("material_root"));
				RootInputs.Add(MakeShared<FJsonValueObject>(Node));
				if (Input.bConnected)
				{
					Connections.Add(MakeConnection(Input, TEXT("material_root"), FString(), Index));
				}
			}
			ZorvekMCPBridgeAssets::SetNamedArray(Result, TEXT("root_inputs"), RootInputs, TEXT("root_input_count"));

			TArray<TSharedPtr<FJsonValue>> Expressions;
			for (const FZorvekMCPBridgeMaterialExpressionSnapshot& Expression : Snapshot.Expressions)
			{
				Expressions.Add(MakeShared<FJsonValueObject>(MakeExpressionNode(Expression, Connections)));
			}
			ZorvekMCPBridgeAssets::SetNamedArray(Result, TEXT("expressions"), Expressions, TEXT("expression_count"));

			TArray<TSharedPtr<FJsonValue>> Comments;
			for (const FZorvekMCPBridgeMaterialCommentSnapshot& Comment : Snapshot.Comments)
			{
				TSharedPtr<FJsonObject> Node = MakeShared<FJsonObject>();
				Node->SetStringField(TEXT("node_guid"), Comment.NodeGuid);
				Node->SetStringField(TEXT("node_kind"), TEXT("comment"));
				Node->SetStringField(TEXT("node_title"), Comment.Text);
				Node->SetNumberField(TEXT("node_pos_x"), Comment.PosX);
				Node->SetNumberField(TEXT("node_pos_y"), Comment.PosY);
				Node->SetNumberField(TEXT("width"), Comment.Width);
				Node->SetNumberField(TEXT("height"), Comment.Height);
				Comments.Add(MakeShared<FJsonValueObject>(Node));
			}
			ZorvekMCPBridgeAssets::SetNamedArray(Result, TEXT("comments"), Comments, TEXT("comment_count"));
			ZorvekMCPBridgeAssets::SetNamedArray(Result, TEXT("connections"), Connections, TEXT("connection_count"));
		}

		void AddInstanceParameters(const TSharedPtr<FJsonObject>& Result, FZorvekMCPBridgeObjectHandle Instance)
		{
			const FZorvekMCPBridgeObjectHandle Parent = Reflection.FindProperty(Instance, TEXT("Parent")).GetReferencedObject();
			Result->SetObjectField(TEXT("parent"), ZorvekMCPBridgeAssets::MakeObjectIdentityJson(Objects, Parent));

			for (const FParameterArray& Array : ParameterArrays)
			{
				TArray<TSharedPtr<FJsonValue>> Entries;
				const FZorvekMCPBridgePropertyCursor Values = Reflection.FindProperty(Instance, Array.SourceProperty);
				int32 TotalCount = 0;
				TArray<TSharedPtr<FJsonValue>> Exported = ZorvekMCPBridgeAssets::ExportStructArrayElements(Port, Values, TotalCount);
				for (int32 Index = 0; Index < Exported.Num(); ++Index)
				{
					const TSharedPtr<FJsonObject>& Entry = Exported[Index]->AsObject();
					const FZorvekMCPBridgePropertyCursor Element = Values.GetArrayElement(Index);
					Entry->SetStringField(TEXT("parameter_kind"), Array.ParameterKind);
					FString ParentValue;
					const bool bParentValueKnown = FindParentValue(Parent, Array, GetParameterName(Element), ParentValue);
					Entry->SetBoolField(TEXT("overridden"), !bParentValueKnown || !ParentValue.Equals(GetEntryValue(Element, Array), ESearchCase::CaseSensitive));
					if (bParentValueKnown)
					{
						Entry->SetStringField(TEXT("parent_value"), ParentValue);
					}
					Entries.Add(Exported[Index]);
				}
				ZorvekMCPBridgeAssets::SetNamedArray(Result, Array.ResultKey, Entries);
				if (TotalCount > Entries.Num())
				{
					Result->SetNumberField(FString::Printf(TEXT("%s_truncated_after"), Array.ResultKey), Entries.Num());
					Result->SetNumberField(FString::Printf(TEXT("%s_total_count"), Array.ResultKey), TotalCount);
				}
			}
		}

	private:
		TSharedPtr<FJsonObject> MakeExpressionNode(const FZorvekMCPBridgeMaterialExpressionSnapshot& Expression, TArray<TSharedPtr<FJsonValue>>& OutConnections)
		{
			TSharedPtr<FJsonObject> Node = MakeShared<FJsonObject>();
			Node->SetStringField(TEXT("node_guid"), Expression.NodeGuid);
			Node->SetStringField(TEXT("node_title"), Expression.Title);
			Node->SetStringField(TEXT("node_kind"), TEXT("material_expression"));
			Node->SetStringField(TEXT("expression_class"), Expression.ClassName);
			Node->SetStringField(TEXT("description"), Expression.Description);
			Node->SetNumberField(TEXT("node_pos_x"), Expression.PosX);
			Node->SetNumberField(TEXT("node_pos_y"), Expression.PosY);
			Node->SetBoolField(TEXT("is_parameter"), Expression.bIsParameter);
			if (Expression.bIsParameter)
			{
				Node->SetStringField(TEXT("parameter_name"), Expression.ParameterName);
			}

			TArray<TSharedPtr<FJsonValue>> References;
			TArray<TSharedPtr<FJsonValue>> ExpressionFailures;
			Node->SetObjectField(TEXT("properties"), ZorvekMCPBridgeAssets::ExportObjectProperties(Port, Expression.Expression, ExpressionPropertyLimit, References, ExpressionFailures));
			Node->SetArrayField(TEXT("references"), References);

			TArray<TSharedPtr<FJsonValue>> Outputs;
			for (int32 Index = 0; Index < Expression.Outputs.Num(); ++Index)
			{
				const FZorvekMCPBridgeMaterialOutputSnapshot& Output = Expression.Outputs[Index];
				TSharedPtr<FJsonObject> OutputJson = MakeShared<FJsonObject>();
				OutputJson->SetNumberField(TEXT("output_index"), Index);
				OutputJson->SetStringField(TEXT("output_name"), Output.OutputName);
				SetMaskFields(OutputJson, Output.Mask);
				Outputs.Add(MakeShared<FJsonValueObject>(OutputJson));
			}
			ZorvekMCPBridgeAssets::SetNamedArray(Node, TEXT("outputs"), Outputs, TEXT("output_count"));

			TArray<TSharedPtr<FJsonValue>> Inputs;
			for (int32 Index = 0; Index < Expression.Inputs.Num(); ++Index)
			{
				const FZorvekMCPBridgeMaterialInputSnapshot& Input = Expression.Inputs[Index];
				TSharedPtr<FJsonObject> InputJson = MakeInputNode(Input);
				InputJson->SetNumberField(TEXT("input_index"), Index);
				Inputs.Add(MakeShared<FJsonValueObject>(InputJson));
				if (Input.bConnected)
				{
					OutConnections.Add(MakeConnection(Input, TEXT("expression"), Expression.NodeGuid, Index));
				}
			}
			ZorvekMCPBridgeAssets::SetNamedArray(Node, TEXT("inputs"), Inputs, TEXT("input_count"));

			TArray<TSharedPtr<FJsonValue>> Textures;
			for (const FZorvekMCPBridgeObjectHandle& Texture : Expression.ReferencedTextures)
			{
				Textures.Add(MakeShared<FJsonValueObject>(ZorvekMCPBridgeAssets::MakeObjectIdentityJson(Objects, Texture)));
			}
			Node->SetArrayField(TEXT("referenced_textures"), Textures);
			Node->SetNumberField(TEXT("referenced_texture_count"), Textures.Num());

			Node->SetArrayField(TEXT("partial_failures"), ExpressionFailures);
			PartialFailures.Append(ExpressionFailures);
			return Node;
		}

		static FString GetParameterName(const FZorvekMCPBridgePropertyCursor& Entry)
		{
			return ZorvekMCPBridgeAssets::GetExportText(Entry.FindStructField(TEXT("ParameterInfo")).FindStructField(TEXT("Name")));
		}

		static FString JoinFieldTexts(const FZorvekMCPBridgePropertyCursor& FirstSource, const FZorvekMCPBridgePropertyCursor& SecondSource, bool bHasSecond)
		{
			FString Text = ZorvekMCPBridgeAssets::GetExportText(FirstSource);
			if (bHasSecond)
			{
				Text += TEXT(",");
				Text += ZorvekMCPBridgeAssets::GetExportText(SecondSource);
			}
			return Text;
		}

		static FString GetEntryValue(const FZorvekMCPBridgePropertyCursor& Entry, const FParameterArray& Array)
		{
			const bool bHasSecond = Array.ValueFields[1] != nullptr;
			return JoinFieldTexts(Entry.FindStructField(Array.ValueFields[0]), bHasSecond ? Entry.FindStructField(Array.ValueFields[1]) : FZorvekMCPBridgePropertyCursor(), bHasSecond);
		}

		// The value the instance would show without its own entry: the nearest parent instance's
		// entry of that name, else the default of the parameter expression of that name in the
		// base material. False when no parent provides the parameter.
		bool FindParentValue(FZorvekMCPBridgeObjectHandle Parent, const FParameterArray& Array, const FString& ParameterName, FString& OutValue)
		{
			for (int32 ChainLength = 0; Parent.IsValid() && ChainLength < MaxParentChainLength; ++ChainLength)
			{
				if (Objects.IsA(Parent, MaterialInstanceClassPath))
				{
					const FZorvekMCPBridgePropertyCursor Values = Reflection.FindProperty(Parent, Array.SourceProperty);
					const int32 Count = Values.GetArrayNum();
					for (int32 Index = 0; Index < Count; ++Index)
					{
						const FZorvekMCPBridgePropertyCursor Entry = Values.GetArrayElement(Index);
						if (GetParameterName(Entry) == ParameterName)
						{
							OutValue = GetEntryValue(Entry, Array);
							return true;
						}
					}
					Parent = Reflection.FindProperty(Parent, TEXT("Parent")).GetReferencedObject();
					continue;
				}
				if (Objects.IsA(Parent, MaterialClassPath))
				{
					for (const FZorvekMCPBridgeMaterialExpressionSnapshot& Expression : GetMaterialSnapshot(Parent).Expressions)
					{
						if (Expression.bIsParameter && Expression.ParameterName == ParameterName)
						{
							const FZorvekMCPBridgePropertyCursor First = Reflection.FindProperty(Expression.Expression, Array.ExpressionDefaultFields[0]);
							if (!First.IsValid())
							{
								continue;
							}
							const bool bHasSecond = Array.ExpressionDefaultFields[1] != nullptr;
							OutValue = JoinFieldTexts(First, bHasSecond ? Reflection.FindProperty(Expression.Expression, Array.ExpressionDefaultFields[1]) : FZorvekMCPBridgePropertyCursor(), bHasSecond);
							return true;
						}
					}
				}
				return false;
			}
			return false;
		}

		const FZorvekMCPBridgeMaterialSnapshot& GetMaterialSnapshot(FZorvekMCPBridgeObjectHandle Material)
		{
			if (const FZorvekMCPBridgeMaterialSnapshot* Cached = ParentSnapshots.Find(Material))
			{
				return *Cached;
			}
			FZorvekMCPBridgeMaterialSnapshot& Snapshot = ParentSnapshots.Add(Material);
			Port.GetMaterials().ReadMaterial(Material, TArray<FString>(), Snapshot);
			return Snapshot;
		}

		IZorvekMCPBridgeEditorPort& Port;
		IZorvekMCPBridgeObjects& Objects;
		IZorvekMCPBridgeReflection& Reflection;
		TArray<TSharedPtr<FJsonValue>>& PartialFailures;
		TMap<FZorvekMCPBridgeObjectHandle, FZorvekMCPBridgeMaterialSnapshot> ParentSnapshots;
	};
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeAssets::ReadMaterialAsset(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Asset, TArray<TSharedPtr<FJsonValue>>& OutPartialFailures)
{
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();

	FString AssetKind = TEXT("unknown");
	for (const FMaterialKind& Kind : MaterialKinds)
	{
		if (Objects.IsA(Asset, Kind.ClassPath))
		{
			AssetKind = Kind.AssetKind;
			break;
		}
	}
	const bool bRecognized = Objects.IsA(Asset, MaterialInterfaceClassPath) || Objects.IsA(Asset, MaterialFunctionInterfaceClassPath);
	Result->SetBoolField(TEXT("recognized"), bRecognized);
	Result->SetStringField(TEXT("asset_kind"), AssetKind);
	Result->SetObjectField(TEXT("asset"), MakeObjectIdentityJson(Objects, Asset));

	FMaterialReader Reader(Port, OutPartialFailures);
	if (Objects.IsA(Asset, MaterialClassPath))
	{
		Reader.AddMaterialGraph(Result, Asset);
	}
	else if (Objects.IsA(Asset, MaterialInstanceClassPath))
	{
		Reader.AddInstanceParameters(Result, Asset);
	}
	return Result;
}
