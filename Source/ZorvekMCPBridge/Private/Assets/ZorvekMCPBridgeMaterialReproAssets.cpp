#include "Assets/ZorvekMCPBridgeMaterialReproAssets.h"

#include "Assets/ZorvekMCPBridgeMaterialAuthoring.h"
#include "Assets/ZorvekMCPBridgePropertyExport.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

namespace
{
	// Engine content every project has: the texture sample parameter's own default texture and
	// a second texture for the instance to override it with.
	const TCHAR* const MaterialReproBaseTexturePath = TEXT("/Engine/EngineResources/DefaultTexture.DefaultTexture");
	const TCHAR* const MaterialReproOverrideTexturePath = TEXT("/Engine/EngineResources/WhiteSquareTexture.WhiteSquareTexture");

	struct FMaterialReproNode
	{
		const TCHAR* ClassName;
		const TCHAR* NodeName;
		const TCHAR* ParameterName;
		int32 PosX;
		int32 PosY;
		// Property name and import text, or nulls.
		const TCHAR* PropertyName;
		const TCHAR* PropertyText;
	};

	const FMaterialReproNode MaterialReproNodes[] = {
		{TEXT("MaterialExpressionTextureCoordinate"), TEXT("TexCoord"), nullptr, -900, 0, TEXT("UTiling"), TEXT("2.0")},
		{TEXT("MaterialExpressionTextureSampleParameter2D"), TEXT("BaseTexture"), TEXT("BaseTexture"), -600, 0, nullptr, nullptr},
		{TEXT("MaterialExpressionVectorParameter"), TEXT("Tint"), TEXT("Tint"), -600, 300, TEXT("DefaultValue"), TEXT("(R=1.0,G=0.5,B=0.25,A=1.0)")},
		{TEXT("MaterialExpressionMultiply"), TEXT("TintMultiply"), nullptr, -300, 100, nullptr, nullptr},
		{TEXT("MaterialExpressionScalarParameter"), TEXT("Roughness"), TEXT("Roughness"), -300, 400, TEXT("DefaultValue"), TEXT("0.35")}};

	// Source node, output index, target node (null: the root input) and input name.
	struct FMaterialReproWire
	{
		const TCHAR* Source;
		int32 OutputIndex;
		const TCHAR* Target;
		const TCHAR* InputName;
	};

	const FMaterialReproWire MaterialReproWires[] = {
		{TEXT("TexCoord"), 0, TEXT("BaseTexture"), TEXT("Coordinates")},
		{TEXT("BaseTexture"), 0, TEXT("TintMultiply"), TEXT("A")},
		{TEXT("Tint"), 0, TEXT("TintMultiply"), TEXT("B")},
		{TEXT("TintMultiply"), 0, nullptr, TEXT("BaseColor")},
		{TEXT("Roughness"), 0, nullptr, TEXT("Roughness")}};

	class FMaterialReproBuilder
	{
	public:
		FMaterialReproBuilder(IZorvekMCPBridgeEditorPort& InPort)
			: Port(InPort)
			, Materials(InPort.GetMaterials())
		{
		}

		void Fail(const TCHAR* Stage, const FString& Reason)
		{
			PartialFailures.Add(ZorvekMCPBridgeAssets::MakePartialFailure(Stage, Reason));
		}

		// The checks material_create makes, then the asset; invalid with a partial failure.
		FZorvekMCPBridgeObjectHandle CreateAsset(const FString& PackagePath, const FString& AssetName, FZorvekMCPBridgeObjectHandle Parent, const TCHAR* Stage)
		{
			const FString PackageName = PackagePath + TEXT("/") + AssetName;
			FString Reason;
			FZorvekMCPBridgeObjectHandle Asset;
			if (!Port.GetAssetAuthoring().IsValidLongPackageName(PackageName, Reason))
			{
				Reason = FString::Printf(TEXT("'%s' is not a valid package name: %s"), *PackageName, *Reason);
			}
			else if (!Port.GetAssetRegistry().GetAssetsByPackageName(PackageName).IsEmpty() || Port.GetObjects().FindObject(PackageName + TEXT(".") + AssetName).IsValid())
			{
				Reason = FString::Printf(TEXT("an asset already exists at %s."), *PackageName);
			}
			else
			{
				Asset = Parent.IsValid() ? Materials.CreateMaterialInstance(PackageName, AssetName, Parent, Reason) : Materials.CreateMaterial(PackageName, AssetName, Reason);
			}
			if (!Asset.IsValid())
			{
				Fail(Stage, FString::Printf(TEXT("Could not create %s: %s"), *AssetName, *Reason));
			}
			return Asset;
		}

		FZorvekMCPBridgeObjectHandle LoadTexture(const TCHAR* ObjectPath)
		{
			const FZorvekMCPBridgeObjectHandle Texture = Port.GetObjects().LoadObject(ObjectPath);
			if (!Port.GetObjects().IsA(Texture, ZorvekMCPBridgeMaterialAuthoring::TextureClassPath))
			{
				Fail(TEXT("texture_load"), FString::Printf(TEXT("Could not load texture: %s"), ObjectPath));
				return FZorvekMCPBridgeObjectHandle();
			}
			return Texture;
		}

		void AddNodes(FZorvekMCPBridgeObjectHandle Material, FZorvekMCPBridgeObjectHandle BaseTexture)
		{
			for (const FMaterialReproNode& Node : MaterialReproNodes)
			{
				const FZorvekMCPBridgeObjectHandle Expression = Materials.NewExpression(Material, ZorvekMCPBridgeMaterialAuthoring::MakeExpressionClassPath(Node.ClassName), Node.NodeName);
				if (!Expression.IsValid())
				{
					Fail(TEXT("expression_create"), FString::Printf(TEXT("Could not create material expression: %s"), Node.ClassName));
					continue;
				}
				if (Node.ParameterName)
				{
					Materials.SetParameterName(Expression, Node.ParameterName);
				}
				FString Error;
				if (Node.PropertyName && !ZorvekMCPBridgeAssets::ImportPropertyText(Port, Expression, Node.PropertyName, Node.PropertyText, Error))
				{
					Fail(TEXT("expression_create"), Error);
				}
				if (BaseTexture.IsValid() && Port.GetReflection().FindProperty(Expression, TEXT("Texture")).IsValid()
					&& !ZorvekMCPBridgeAssets::ImportPropertyText(Port, Expression, TEXT("Texture"), Port.GetObjects().GetIdentity(BaseTexture).ObjectPath, Error))
				{
					Fail(TEXT("expression_create"), Error);
				}
				Materials.AddExpression(Material, Expression, Node.PosX, Node.PosY);
			}
			Materials.AddComment(Material, TEXT("Base color: texture times tint"), -950, -100, 900, 650);
		}

		void Wire(FZorvekMCPBridgeObjectHandle Material)
		{
			FZorvekMCPBridgeMaterialSnapshot Snapshot;
			Materials.ReadMaterial(Material, TArray<FString>(), Snapshot);
			const FString MaterialPath = Port.GetObjects().GetIdentity(Material).ObjectPath;
			for (const FMaterialReproWire& Wire : MaterialReproWires)
			{
				const FZorvekMCPBridgeMaterialExpressionSnapshot* Source = FindNode(Snapshot, MaterialPath, Wire.Source);
				const FZorvekMCPBridgeMaterialExpressionSnapshot* Target = Wire.Target ? FindNode(Snapshot, MaterialPath, Wire.Target) : nullptr;
				const int32 InputIndex = Target ? ZorvekMCPBridgeMaterialAuthoring::FindInputIndex(*Target, Wire.InputName) : INDEX_NONE;
				const bool bConnected = Source && (Wire.Target
					? InputIndex != INDEX_NONE && Materials.ConnectExpressionInput(Source->Expression, Wire.OutputIndex, Target->Expression, InputIndex)
					: Materials.ConnectRootInput(Material, Wire.InputName, Source->Expression, Wire.OutputIndex));
				if (!bConnected)
				{
					Fail(TEXT("expression_connect"), FString::Printf(TEXT("Could not connect %s to %s.%s."), Wire.Source, Wire.Target ? Wire.Target : TEXT("the material"), Wire.InputName));
				}
			}
		}

		TArray<TSharedPtr<FJsonValue>> PartialFailures;

	private:
		const FZorvekMCPBridgeMaterialExpressionSnapshot* FindNode(const FZorvekMCPBridgeMaterialSnapshot& Snapshot, const FString& MaterialPath, const TCHAR* NodeName) const
		{
			const FString Path = MaterialPath + TEXT(":") + NodeName;
			for (const FZorvekMCPBridgeMaterialExpressionSnapshot& Expression : Snapshot.Expressions)
			{
				if (Port.GetObjects().GetIdentity(Expression.Expression).ObjectPath.Equals(Path, ESearchCase::IgnoreCase))
				{
					return &Expression;
				}
			}
			return nullptr;
		}

		IZorvekMCPBridgeEditorPort& Port;
		IZorvekMCPBridgeMaterials& Materials;
	};
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialReproAssets::CreateMaterialReproAssets(IZorvekMCPBridgeEditorPort& Port, const FParams& Params)
{
	FString PackagePath = Params.PackagePath.IsEmpty()
		? FString::Printf(TEXT("/Game/ZorvekRepro/MaterialRepro_%s"), *Params.Now.ToString(TEXT("%Y%m%d_%H%M%S")))
		: Params.PackagePath;
	while (PackagePath.Len() > 1 && PackagePath.EndsWith(TEXT("/")))
	{
		PackagePath.LeftChopInline(1);
	}
	const FString MaterialName = FString::Printf(TEXT("M_%s_Base"), *Params.AssetPrefix);
	const FString InstanceName = FString::Printf(TEXT("MI_%s_Override"), *Params.AssetPrefix);

	FMaterialReproBuilder Builder(Port);
	const FZorvekMCPBridgeObjectHandle Material = Builder.CreateAsset(PackagePath, MaterialName, FZorvekMCPBridgeObjectHandle(), TEXT("asset_create"));
	if (Material.IsValid())
	{
		Builder.AddNodes(Material, Builder.LoadTexture(MaterialReproBaseTexturePath));
		Builder.Wire(Material);
		Port.GetMaterials().NotifyMaterialEdited(Material);
	}

	FZorvekMCPBridgeObjectHandle Instance;
	if (Material.IsValid())
	{
		Instance = Builder.CreateAsset(PackagePath, InstanceName, Material, TEXT("instance_create"));
	}
	if (Instance.IsValid())
	{
		IZorvekMCPBridgeMaterials& Materials = Port.GetMaterials();
		if (!Materials.SetInstanceScalarParameter(Instance, TEXT("Roughness"), 0.8f))
		{
			Builder.Fail(TEXT("instance_override"), TEXT("Could not override scalar parameter Roughness."));
		}
		const FZorvekMCPBridgeObjectHandle OverrideTexture = Builder.LoadTexture(MaterialReproOverrideTexturePath);
		if (OverrideTexture.IsValid() && !Materials.SetInstanceTextureParameter(Instance, TEXT("BaseTexture"), OverrideTexture))
		{
			Builder.Fail(TEXT("instance_override"), TEXT("Could not override texture parameter BaseTexture."));
		}
		Materials.NotifyMaterialEdited(Instance);
	}

	const FString MaterialPackage = PackagePath + TEXT("/") + MaterialName;
	const FString InstancePackage = PackagePath + TEXT("/") + InstanceName;
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("package_path"), PackagePath);
	Result->SetStringField(TEXT("material_asset_path"), MaterialPackage);
	Result->SetStringField(TEXT("material_instance_asset_path"), InstancePackage);
	Result->SetStringField(TEXT("material_object_path"), MaterialPackage + TEXT(".") + MaterialName);
	Result->SetStringField(TEXT("material_instance_object_path"), InstancePackage + TEXT(".") + InstanceName);
	Result->SetArrayField(TEXT("partial_failures"), Builder.PartialFailures);
	Result->SetBoolField(TEXT("created"), Material.IsValid() && Instance.IsValid());
	return Result;
}
