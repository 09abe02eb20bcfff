#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "MaterialExpressionIO.h"
#include "Materials/Material.h"
#include "Materials/MaterialExpression.h"
#include "Materials/MaterialExpressionComment.h"
#include "Materials/MaterialExpressionComponentMask.h"
#include "Materials/MaterialInstanceConstant.h"
#include "Engine/Texture.h"
#include "MaterialTypes.h"
#include "SceneTypes.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/Package.h"
#include "UObject/ReflectedTypeAccessors.h"

namespace
{
	// The caption lines, last line first, one per line, as the material editor titles a node.
	FString MakeTitle(UMaterialExpression* Expression)
	{
		TArray<FString> Captions;
		Expression->GetCaption(Captions);
		TArray<FString> Lines;
		for (int32 Index = Captions.Num() - 1; Index >= 0; --Index)
		{
			Lines.Add(Captions[Index]);
		}
		return FString::Join(Lines, TEXT("\n"));
	}

	FZorvekMCPBridgeMaterialInputSnapshot MakeInput(const FExpressionInput& Input, const FString& InputName)
	{
		FZorvekMCPBridgeMaterialInputSnapshot Snapshot;
		Snapshot.InputName = InputName;
		Snapshot.RawInputName = Input.InputName.ToString();
		Snapshot.bConnected = Input.Expression != nullptr;
		Snapshot.OutputIndex = Input.OutputIndex;
		Snapshot.Mask = {Input.Mask, Input.MaskR, Input.MaskG, Input.MaskB, Input.MaskA};
		if (Input.Expression)
		{
			Snapshot.SourceNodeGuid = Input.Expression->MaterialExpressionGuid.ToString();
			Snapshot.SourceNodeTitle = MakeTitle(Input.Expression);
			Snapshot.SourceNodeClass = Input.Expression->GetClass()->GetName();
		}
		return Snapshot;
	}

	FZorvekMCPBridgeMaterialExpressionSnapshot MakeExpression(UMaterialExpression* Expression)
	{
		FZorvekMCPBridgeMaterialExpressionSnapshot Snapshot;
		Snapshot.Expression = FZorvekMCPBridgeEngineEditorPort::ToHandle(Expression);
		Snapshot.NodeGuid = Expression->MaterialExpressionGuid.ToString();
		Snapshot.Title = MakeTitle(Expression);
		Snapshot.ClassName = Expression->GetClass()->GetName();
		Snapshot.Description = Expression->Desc;
		Snapshot.PosX = Expression->MaterialExpressionEditorX;
		Snapshot.PosY = Expression->MaterialExpressionEditorY;
		Snapshot.bIsParameter = Expression->bIsParameterExpression || Expression->HasAParameterName();
		if (Snapshot.bIsParameter)
		{
			Snapshot.ParameterName = Expression->GetParameterName().ToString();
		}
		for (const FExpressionOutput& Output : Expression->GetOutputs())
		{
			Snapshot.Outputs.Add({Output.OutputName.IsNone() ? FString() : Output.OutputName.ToString(), {Output.Mask, Output.MaskR, Output.MaskG, Output.MaskB, Output.MaskA}});
		}
		for (int32 Index = 0; FExpressionInput* Input = Expression->GetInput(Index); ++Index)
		{
			Snapshot.Inputs.Add(MakeInput(*Input, Expression->GetInputName(Index).ToString()));
		}
		// Texture expressions report their one texture here.
		if (UObject* Texture = Expression->GetReferencedTexture())
		{
			Snapshot.ReferencedTextures.Add(FZorvekMCPBridgeEngineEditorPort::ToHandle(Texture));
		}
		return Snapshot;
	}
}

bool FZorvekMCPBridgeEngineMaterials::ReadMaterial(FZorvekMCPBridgeObjectHandle Handle, const TArray<FString>& RootProperties, FZorvekMCPBridgeMaterialSnapshot& OutSnapshot) const
{
	UMaterial* Material = Cast<UMaterial>(FZorvekMCPBridgeEngineEditorPort::ToObject(Handle));
	if (!Material)
	{
		return false;
	}
	OutSnapshot = FZorvekMCPBridgeMaterialSnapshot();
	OutSnapshot.MaterialDomain = StaticEnum<EMaterialDomain>()->GetNameStringByValue((int64)Material->MaterialDomain.GetValue());
	OutSnapshot.BlendMode = StaticEnum<EBlendMode>()->GetNameStringByValue((int64)Material->BlendMode.GetValue());
	OutSnapshot.bTwoSided = Material->TwoSided != 0;
	OutSnapshot.bUseMaterialAttributes = Material->bUseMaterialAttributes != 0;

	const UEnum* PropertyEnum = StaticEnum<EMaterialProperty>();
	for (const FString& RootName : RootProperties)
	{
		const int64 Property = PropertyEnum->GetValueByNameString(FString(TEXT("MP_")) + RootName);
		const FExpressionInput* Input = (Property != INDEX_NONE && Property < MP_MAX) ? Material->GetExpressionInputForProperty((EMaterialProperty)Property) : nullptr;
		if (Input)
		{
			OutSnapshot.RootInputs.Add(MakeInput(*Input, RootName));
		}
		else
		{
			FZorvekMCPBridgeMaterialInputSnapshot Missing;
			Missing.InputName = RootName;
			Missing.RawInputName = TEXT("None");
			OutSnapshot.RootInputs.Add(Missing);
		}
	}

	const FMaterialExpressionCollection& Collection = Material->GetExpressionCollection();
	for (UMaterialExpression* Expression : Collection.Expressions)
	{
		if (Expression)
		{
			OutSnapshot.Expressions.Add(MakeExpression(Expression));
		}
	}
	for (UMaterialExpressionComment* Comment : Collection.EditorComments)
	{
		if (Comment)
		{
			OutSnapshot.Comments.Add({Comment->MaterialExpressionGuid.ToString(), Comment->Text, Comment->MaterialExpressionEditorX, Comment->MaterialExpressionEditorY, Comment->SizeX, Comment->SizeY});
		}
	}
	return true;
}

namespace
{
	UMaterial* ToMaterial(FZorvekMCPBridgeObjectHandle Handle)
	{
		return Cast<UMaterial>(FZorvekMCPBridgeEngineEditorPort::ToObject(Handle));
	}

	UMaterialExpression* ToExpression(FZorvekMCPBridgeObjectHandle Handle)
	{
		return Cast<UMaterialExpression>(FZorvekMCPBridgeEngineEditorPort::ToObject(Handle));
	}

	UClass* LoadExpressionClass(const FString& ClassPath)
	{
		UClass* Class = LoadObject<UClass>(nullptr, ClassPath);
		return Class && Class->IsChildOf(UMaterialExpression::StaticClass()) && !Class->HasAnyClassFlags(CLASS_Abstract) ? Class : nullptr;
	}
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineMaterials::CreateMaterial(const FString& PackageName, const FString& AssetName, FString& OutError)
{
	// The blank material UMaterialFactoryNew makes, without IAssetTools, whose overwrite
	// question would wait for a click (unreal-api-editor.md §4.5).
	UPackage* Package = CreatePackage(*PackageName);
	if (!Package)
	{
		OutError = FString::Printf(TEXT("the editor refused to create package %s."), *PackageName);
		return FZorvekMCPBridgeObjectHandle();
	}
	UMaterial* Material = NewObject<UMaterial>(Package, FName(*AssetName), RF_Public | RF_Standalone | RF_Transactional);
	FAssetRegistryModule::AssetCreated(Material);
	Material->PostEditChange();
	Material->MarkPackageDirty();
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(Material);
}

bool FZorvekMCPBridgeEngineMaterials::IsParameterExpressionClass(const FString& ClassPath) const
{
	const UClass* Class = LoadExpressionClass(ClassPath);
	const UMaterialExpression* Default = Class ? Cast<UMaterialExpression>(Class->GetDefaultObject()) : nullptr;
	return Default && Default->HasAParameterName();
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineMaterials::NewExpression(FZorvekMCPBridgeObjectHandle MaterialHandle, const FString& ClassPath, const FString& NodeName)
{
	UMaterial* Material = ToMaterial(MaterialHandle);
	UClass* Class = LoadExpressionClass(ClassPath);
	if (!Material || !Class)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	// What CreateMaterialExpressionEx does before it adds the expression to the graph
	// (unreal-behaviour-world-assets.md §5.3); the rest waits for AddExpression.
	UMaterialExpression* Expression = NewObject<UMaterialExpression>(Material, Class, NodeName.IsEmpty() ? FName(NAME_None) : FName(*NodeName), RF_Transactional);
	Expression->Material = Material;
	// UMaterialExpressionComponentMask: not in the reference notes beyond its R/G/B/A bits; check
	// against the engine.
	if (UMaterialExpressionComponentMask* Mask = Cast<UMaterialExpressionComponentMask>(Expression))
	{
		Mask->R = 1;
		Mask->G = 1;
	}
	if (Expression->HasAParameterName())
	{
		Expression->ValidateParameterName(false);
	}
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(Expression);
}

void FZorvekMCPBridgeEngineMaterials::DiscardExpression(FZorvekMCPBridgeObjectHandle Handle)
{
	if (UMaterialExpression* Expression = ToExpression(Handle))
	{
		// Out of the material's package without dirtying it, so its name is free again. The REN_
		// flags are not in the reference notes; check against the engine.
		Expression->Rename(nullptr, GetTransientPackage(), REN_DoNotDirty | REN_DontCreateRedirectors | REN_NonTransactional);
		Expression->Material = nullptr;
		Expression->MarkAsGarbage();
	}
}

void FZorvekMCPBridgeEngineMaterials::SetParameterName(FZorvekMCPBridgeObjectHandle Handle, const FString& ParameterName)
{
	if (UMaterialExpression* Expression = ToExpression(Handle))
	{
		Expression->SetParameterName(FName(*ParameterName));
	}
}

void FZorvekMCPBridgeEngineMaterials::SetDescription(FZorvekMCPBridgeObjectHandle Handle, const FString& Description)
{
	if (UMaterialExpression* Expression = ToExpression(Handle))
	{
		Expression->Desc = Description;
	}
}

void FZorvekMCPBridgeEngineMaterials::AddExpression(FZorvekMCPBridgeObjectHandle MaterialHandle, FZorvekMCPBridgeObjectHandle Handle, int32 PosX, int32 PosY)
{
	UMaterial* Material = ToMaterial(MaterialHandle);
	UMaterialExpression* Expression = ToExpression(Handle);
	if (!Material || !Expression)
	{
		return;
	}
	Material->GetExpressionCollection().AddExpression(Expression);
	Expression->MaterialExpressionEditorX = PosX;
	Expression->MaterialExpressionEditorY = PosY;
	Expression->UpdateMaterialExpressionGuid(true, true);
	if (Expression->HasAParameterName())
	{
		Expression->UpdateParameterGuid(true, true);
	}
	Material->MarkPackageDirty();
}

bool FZorvekMCPBridgeEngineMaterials::ConnectExpressionInput(FZorvekMCPBridgeObjectHandle SourceHandle, int32 OutputIndex, FZorvekMCPBridgeObjectHandle TargetHandle, int32 InputIndex)
{
	UMaterialExpression* Source = ToExpression(SourceHandle);
	UMaterialExpression* Target = ToExpression(TargetHandle);
	FExpressionInput* Input = Source && Target ? Target->GetInput(InputIndex) : nullptr;
	if (!Input)
	{
		return false;
	}
	Input->Connect(OutputIndex, Source);
	return true;
}

bool FZorvekMCPBridgeEngineMaterials::ConnectRootInput(FZorvekMCPBridgeObjectHandle MaterialHandle, const FString& RootProperty, FZorvekMCPBridgeObjectHandle SourceHandle, int32 OutputIndex)
{
	UMaterial* Material = ToMaterial(MaterialHandle);
	UMaterialExpression* Source = ToExpression(SourceHandle);
	const int64 Property = StaticEnum<EMaterialProperty>()->GetValueByNameString(FString(TEXT("MP_")) + RootProperty);
	// GetExpressionInputForProperty does not check its argument; MP_MAX and beyond stay out.
	FExpressionInput* Input = Material && Source && Property != INDEX_NONE && Property < MP_MAX ? Material->GetExpressionInputForProperty((EMaterialProperty)Property) : nullptr;
	if (!Input)
	{
		return false;
	}
	Input->Connect(OutputIndex, Source);
	return true;
}

void FZorvekMCPBridgeEngineMaterials::AddComment(FZorvekMCPBridgeObjectHandle MaterialHandle, const FString& Text, int32 PosX, int32 PosY, int32 Width, int32 Height)
{
	UMaterial* Material = ToMaterial(MaterialHandle);
	if (!Material)
	{
		return;
	}
	// Comments are made by hand: CreateMaterialExpression would file one under the expressions
	// (unreal-api-editor.md §4.3).
	UMaterialExpressionComment* Comment = NewObject<UMaterialExpressionComment>(Material, NAME_None, RF_Transactional);
	Comment->Material = Material;
	Comment->Text = Text;
	Comment->MaterialExpressionEditorX = PosX;
	Comment->MaterialExpressionEditorY = PosY;
	Comment->SizeX = Width;
	Comment->SizeY = Height;
	Comment->UpdateMaterialExpressionGuid(true, true);
	Material->GetExpressionCollection().AddComment(Comment);
	Material->MarkPackageDirty();
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineMaterials::CreateMaterialInstance(const FString& PackageName, const FString& AssetName, FZorvekMCPBridgeObjectHandle ParentHandle, FString& OutError)
{
	UMaterialInterface* Parent = Cast<UMaterialInterface>(FZorvekMCPBridgeEngineEditorPort::ToObject(ParentHandle));
	UPackage* Package = Parent ? CreatePackage(*PackageName) : nullptr;
	if (!Package)
	{
		OutError = Parent ? FString::Printf(TEXT("the editor refused to create package %s."), *PackageName) : FString(TEXT("the parent is not a material."));
		return FZorvekMCPBridgeObjectHandle();
	}
	// unreal-api-editor.md §4.6: NewObject, SetParentEditorOnly, then PostEditChange.
	UMaterialInstanceConstant* Instance = NewObject<UMaterialInstanceConstant>(Package, FName(*AssetName), RF_Public | RF_Standalone | RF_Transactional);
	Instance->SetParentEditorOnly(Parent);
	FAssetRegistryModule::AssetCreated(Instance);
	Instance->PostEditChange();
	Instance->MarkPackageDirty();
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(Instance);
}

bool FZorvekMCPBridgeEngineMaterials::SetInstanceScalarParameter(FZorvekMCPBridgeObjectHandle Handle, const FString& ParameterName, float Value)
{
	UMaterialInstanceConstant* Instance = Cast<UMaterialInstanceConstant>(FZorvekMCPBridgeEngineEditorPort::ToObject(Handle));
	if (!Instance)
	{
		return false;
	}
	// FMaterialParameterInfo's constructor is not in the reference notes; check against the engine.
	Instance->SetScalarParameterValueEditorOnly(FMaterialParameterInfo(FName(*ParameterName)), Value);
	return true;
}

bool FZorvekMCPBridgeEngineMaterials::SetInstanceTextureParameter(FZorvekMCPBridgeObjectHandle Handle, const FString& ParameterName, FZorvekMCPBridgeObjectHandle TextureHandle)
{
	UMaterialInstanceConstant* Instance = Cast<UMaterialInstanceConstant>(FZorvekMCPBridgeEngineEditorPort::ToObject(Handle));
	// UTexture and FMaterialParameterInfo's constructor: not in the reference notes; check against
	// the engine.
	UTexture* Texture = Cast<UTexture>(FZorvekMCPBridgeEngineEditorPort::ToObject(TextureHandle));
	if (!Instance || !Texture)
	{
		return false;
	}
	Instance->SetTextureParameterValueEditorOnly(FMaterialParameterInfo(FName(*ParameterName)), Texture);
	return true;
}

void FZorvekMCPBridgeEngineMaterials::NotifyMaterialEdited(FZorvekMCPBridgeObjectHandle Handle)
{
	if (UMaterialInterface* Material = Cast<UMaterialInterface>(FZorvekMCPBridgeEngineEditorPort::ToObject(Handle)))
	{
		Material->MarkPackageDirty();
		Material->PostEditChange();
	}
}
