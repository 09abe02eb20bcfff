#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"

// Which channels an output gives or an input takes: Mask says whether the channel bits count.
struct FZorvekMCPBridgeMaterialMask
{
	int32 Mask = 0;
	int32 MaskR = 0;
	int32 MaskG = 0;
	int32 MaskB = 0;
	int32 MaskA = 0;
};

// One input of a material expression, or one root input of a material.
struct FZorvekMCPBridgeMaterialInputSnapshot
{
	// The input's name as the expression reports it (GetInputName); the property name for a
	// root input.
	FString InputName;
	// The input's own name field (FExpressionInput::InputName), "None" when unset.
	FString RawInputName;
	bool bConnected = false;
	int32 OutputIndex = 0;
	FZorvekMCPBridgeMaterialMask Mask;
	// The plugged-in expression, when connected.
	FString SourceNodeGuid;
	FString SourceNodeTitle;
	FString SourceNodeClass;
};

struct FZorvekMCPBridgeMaterialOutputSnapshot
{
	FString OutputName;
	FZorvekMCPBridgeMaterialMask Mask;
};

struct FZorvekMCPBridgeMaterialExpressionSnapshot
{
	// The expression object, for reflection.
	FZorvekMCPBridgeObjectHandle Expression;
	// MaterialExpressionGuid as 32 hexadecimal digits, the handle the authoring tools take.
	FString NodeGuid;
	// The title the material editor shows: the caption lines, last line first, one per line.
	FString Title;
	FString ClassName;
	FString Description;
	int32 PosX = 0;
	int32 PosY = 0;
	bool bIsParameter = false;
	FString ParameterName;
	TArray<FZorvekMCPBridgeMaterialOutputSnapshot> Outputs;
	TArray<FZorvekMCPBridgeMaterialInputSnapshot> Inputs;
	TArray<FZorvekMCPBridgeObjectHandle> ReferencedTextures;
};

struct FZorvekMCPBridgeMaterialCommentSnapshot
{
	FString NodeGuid;
	FString Text;
	int32 PosX = 0;
	int32 PosY = 0;
	int32 Width = 0;
	int32 Height = 0;
};

// What a UMaterial holds in its editor graph.
struct FZorvekMCPBridgeMaterialSnapshot
{
	// Enum value names, e.g. MD_Surface and BLEND_Opaque.
	FString MaterialDomain;
	FString BlendMode;
	bool bTwoSided = false;
	bool bUseMaterialAttributes = false;
	// One per requested root property, in the requested order.
	TArray<FZorvekMCPBridgeMaterialInputSnapshot> RootInputs;
	// In the material's own order.
	TArray<FZorvekMCPBridgeMaterialExpressionSnapshot> Expressions;
	TArray<FZorvekMCPBridgeMaterialCommentSnapshot> Comments;
};

// The read side of materials: what reflection alone cannot reach (the editor-only expression
// collection, the inputs behind GetExpressionInputForProperty, captions and output masks).
class IZorvekMCPBridgeMaterials
{
public:
	virtual ~IZorvekMCPBridgeMaterials() = default;

	// Fills the snapshot of a UMaterial. RootProperties are EMaterialProperty names without the
	// MP_ prefix (BaseColor, Normal, MaterialAttributes...); an unknown name yields an
	// unconnected input of that name. False when the object is not a UMaterial.
	virtual bool ReadMaterial(FZorvekMCPBridgeObjectHandle Material, const TArray<FString>& RootProperties, FZorvekMCPBridgeMaterialSnapshot& OutSnapshot) const = 0;
};
