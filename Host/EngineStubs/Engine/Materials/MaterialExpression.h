#pragma once

#include "CoreMinimal.h"
#include "MaterialExpressionIO.h"
#include "Misc/Guid.h"
#include "UObject/Object.h"
#include "UObject/ObjectPtr.h"

class UMaterial;
class UMaterialExpressionComment;
class UMaterialFunction;

UCLASS(abstract, Optional, BlueprintType, MinimalAPI)
class UMaterialExpression : public UObject
{
	GENERATED_BODY()

public:
	int32 MaterialExpressionEditorX;
	int32 MaterialExpressionEditorY;
	FGuid MaterialExpressionGuid;
	TObjectPtr<UMaterial> Material;
	TObjectPtr<UMaterialFunction> Function;
	FString Desc;
	uint8 bIsParameterExpression : 1;
	TArray<FExpressionOutput> Outputs;

	virtual UObject* GetReferencedTexture() const;
	virtual bool CanReferenceTexture() const;
#if WITH_EDITOR
	virtual FExpressionInput* GetInput(int32 InputIndex);
	virtual FName GetInputName(int32 InputIndex) const;
	virtual int32 CountInputs() const;
	virtual TArray<FExpressionOutput>& GetOutputs();
	virtual void GetCaption(TArray<FString>& OutCaptions) const;
	virtual FString GetDescription() const;
	virtual bool HasAParameterName() const;
	virtual FName GetParameterName() const;
	virtual void SetParameterName(const FName& Name);
	void ValidateParameterName(const bool bAllowDuplicateName = true);
	void UpdateMaterialExpressionGuid(bool bForceGeneration, bool bAllowMarkingPackageDirty);
	void UpdateParameterGuid(bool bForceGeneration, bool bAllowMarkingPackageDirty);
#endif
};

USTRUCT()
struct FMaterialExpressionCollection
{
	GENERATED_USTRUCT_BODY()

	TArray<TObjectPtr<UMaterialExpression>> Expressions;
	TArray<TObjectPtr<UMaterialExpressionComment>> EditorComments;
	TObjectPtr<UMaterialExpression> ExpressionExecBegin;
	TObjectPtr<UMaterialExpression> ExpressionExecEnd;

	void AddExpression(UMaterialExpression* InExpression);
	void AddComment(UMaterialExpressionComment* InComment);
};
