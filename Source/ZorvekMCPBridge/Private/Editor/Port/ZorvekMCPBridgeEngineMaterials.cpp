#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "MaterialExpressionIO.h"
#include "Materials/Material.h"
#include "Materials/MaterialExpression.h"
#include "Materials/MaterialExpressionComment.h"
#include "SceneTypes.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
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
