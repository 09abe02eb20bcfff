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

	// The write side, as the material editor's library does it. Nothing here saves, and only
	// CreateMaterial and AddExpression touch the package's dirty flag; the tools call
	// NotifyMaterialEdited once a change is complete.

	// A blank material PackageName.AssetName (what UMaterialFactoryNew makes: no expressions, no
	// connections) in a new package, registered as created, its package dirty. The caller has
	// checked the names and that nothing exists there. Invalid, with the reason, when the editor
	// refuses.
	virtual FZorvekMCPBridgeObjectHandle CreateMaterial(const FString& PackageName, const FString& AssetName, FString& OutError) = 0;

	// True when the expression class names a parameter (the class default's HasAParameterName).
	virtual bool IsParameterExpressionClass(const FString& ClassPath) const = 0;

	// A new expression of the class inside the material, named NodeName (empty: the engine
	// picks ClassName_N), set up as CreateMaterialExpression sets a new expression up (its
	// material, a unique parameter name for parameter classes, R and G on a component mask) but
	// not yet part of the graph: the material and its package are unchanged until
	// AddExpression. The caller has checked that the class is a concrete expression class and
	// that no object of that name exists in the material.
	virtual FZorvekMCPBridgeObjectHandle NewExpression(FZorvekMCPBridgeObjectHandle Material, const FString& ClassPath, const FString& NodeName) = 0;
	// Throws away an expression from NewExpression that never joined the graph, without
	// dirtying anything; its name is free again.
	virtual void DiscardExpression(FZorvekMCPBridgeObjectHandle Expression) = 0;
	// SetParameterName and the description bubble text (Desc) of an expression.
	virtual void SetParameterName(FZorvekMCPBridgeObjectHandle Expression, const FString& ParameterName) = 0;
	virtual void SetDescription(FZorvekMCPBridgeObjectHandle Expression, const FString& Description) = 0;
	// Puts the expression into the material's expression collection at the position, with a new
	// MaterialExpressionGuid, and marks the package dirty.
	virtual void AddExpression(FZorvekMCPBridgeObjectHandle Material, FZorvekMCPBridgeObjectHandle Expression, int32 PosX, int32 PosY) = 0;

	// FExpressionInput::Connect of the target's input at InputIndex (GetInput order) or of the
	// material's root input (an EMaterialProperty name without MP_, taken through
	// GetExpressionInputForProperty): the source and output index, the output's mask copied. The
	// caller has checked that the output index is one of the source's outputs. False when the
	// input does not exist.
	virtual bool ConnectExpressionInput(FZorvekMCPBridgeObjectHandle Source, int32 OutputIndex, FZorvekMCPBridgeObjectHandle Target, int32 InputIndex) = 0;
	virtual bool ConnectRootInput(FZorvekMCPBridgeObjectHandle Material, const FString& RootProperty, FZorvekMCPBridgeObjectHandle Source, int32 OutputIndex) = 0;

	// A comment box in the material's graph (its editor comments, not its expressions), with a
	// new GUID.
	virtual void AddComment(FZorvekMCPBridgeObjectHandle Material, const FString& Text, int32 PosX, int32 PosY, int32 Width, int32 Height) = 0;

	// A material instance constant PackageName.AssetName whose parent is Parent
	// (SetParentEditorOnly), in a new package, registered as created, its package dirty. Same
	// preconditions as CreateMaterial.
	virtual FZorvekMCPBridgeObjectHandle CreateMaterialInstance(const FString& PackageName, const FString& AssetName, FZorvekMCPBridgeObjectHandle Parent, FString& OutError) = 0;
	// Overrides of a global parameter on a material instance constant
	// (Set*ParameterValueEditorOnly); false when Instance is not one.
	virtual bool SetInstanceScalarParameter(FZorvekMCPBridgeObjectHandle Instance, const FString& ParameterName, float Value) = 0;
	virtual bool SetInstanceTextureParameter(FZorvekMCPBridgeObjectHandle Instance, const FString& ParameterName, FZorvekMCPBridgeObjectHandle Texture) = 0;

	// MarkPackageDirty and PostEditChange on the material (or material instance): what every
	// authoring tool does after its change.
	virtual void NotifyMaterialEdited(FZorvekMCPBridgeObjectHandle Material) = 0;
};
