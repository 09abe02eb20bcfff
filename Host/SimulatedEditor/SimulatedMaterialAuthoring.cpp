#include "SimulatedMaterialAuthoring.h"

#include "SimulatedEditor.h"
#include "SimulatedEditorPort.h"

#include <random>

namespace
{
	const TCHAR* const SimulatedMaterialClassPath = TEXT("/Script/Engine.Material");
	const TCHAR* const SimulatedEditorOnlyDataClassPath = TEXT("/Script/Engine.MaterialEditorOnlyData");
	const TCHAR* const SimulatedExpressionInputStructPath = TEXT("/Script/Engine.ExpressionInput");
	const TCHAR* const SimulatedComponentMaskClassPath = TEXT("/Script/Engine.MaterialExpressionComponentMask");
	const TCHAR* const SimulatedTransientPackageName = TEXT("/Engine/Transient");

	FSimulatedValue* FindValue(FSimulatedObject* Object, const FString& PropertyName, const FSimulatedProperty** OutProperty = nullptr)
	{
		const int32 Index = Object ? Object->Class->FindPropertyIndex(PropertyName) : INDEX_NONE;
		if (Index == INDEX_NONE)
		{
			return nullptr;
		}
		if (OutProperty)
		{
			*OutProperty = Object->Class->AllProperties[(size_t)Index];
		}
		return &Object->Values[(size_t)Index];
	}

	FSimulatedValue* FindField(const FSimulatedProperty& StructProperty, FSimulatedValue& StructValue, const FString& FieldName)
	{
		const int32 Index = StructProperty.TypeObject ? StructProperty.TypeObject->FindPropertyIndex(FieldName) : INDEX_NONE;
		return Index != INDEX_NONE && (size_t)Index < StructValue.Items.size() ? &StructValue.Items[(size_t)Index] : nullptr;
	}

	const FSimulatedExpressionClassInfo* FindOutputsInfo(const FSimulatedType* Class)
	{
		for (; Class; Class = Class->Super)
		{
			if (Class->ExpressionInfo && !Class->ExpressionInfo->Outputs.IsEmpty())
			{
				return Class->ExpressionInfo.get();
			}
		}
		return nullptr;
	}
}

FSimulatedMaterialAuthoring::FSimulatedMaterialAuthoring(FSimulatedEditor& InEditor, FSimulatedEditorPort& InPort)
	: Editor(InEditor)
	, Port(InPort)
	, GuidSeed(std::random_device()())
{
}

FZorvekMCPBridgeObjectHandle FSimulatedMaterialAuthoring::CreateMaterial(const FString& PackageName, const FString& AssetName, FString& OutError)
{
	FSimulatedType* MaterialClass = Editor.FindTypeByPath(SimulatedMaterialClassPath);
	FSimulatedType* EditorOnlyDataClass = Editor.FindTypeByPath(SimulatedEditorOnlyDataClassPath);
	if (!MaterialClass || !EditorOnlyDataClass)
	{
		OutError = TEXT("the project's engine types have no Material class.");
		return FZorvekMCPBridgeObjectHandle();
	}
	FSimulatedObject* Package = Editor.FindOrCreatePackage(PackageName);
	FSimulatedObject* Material = Editor.CreateObject(MaterialClass, Package, AssetName, OutError);
	if (!Material)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	// The material's constructor makes the editor-only data that holds the graph.
	FSimulatedObject* EditorOnlyData = Editor.CreateObject(EditorOnlyDataClass, Material, TEXT("EditorOnlyData"), OutError);
	if (FSimulatedValue* Value = FindValue(Material, TEXT("EditorOnlyData")))
	{
		Value->Object = EditorOnlyData;
	}
	MarkPackageDirty(Material);
	return FSimulatedEditorPort::ToHandle(Material);
}

bool FSimulatedMaterialAuthoring::IsParameterExpressionClass(const FString& ClassPath) const
{
	for (const FSimulatedType* Class = Editor.FindTypeByPath(ClassPath); Class; Class = Class->Super)
	{
		if (Class->ExpressionInfo && Class->ExpressionInfo->bParameter)
		{
			return true;
		}
	}
	return false;
}

FZorvekMCPBridgeObjectHandle FSimulatedMaterialAuthoring::NewExpression(FZorvekMCPBridgeObjectHandle MaterialHandle, const FString& ClassPath, const FString& NodeName)
{
	FSimulatedObject* Material = FSimulatedEditorPort::ToObject(MaterialHandle);
	FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
	if (!Material || !Class)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	FString Name = NodeName;
	if (Name.IsEmpty())
	{
		// MakeUniqueObjectName: the class name and the class's next number, skipping taken names.
		do
		{
			Name = FString::Printf(TEXT("%s_%d"), *Class->Name, ClassUnique[Class]++);
		}
		while (Editor.FindObject(Material->GetPathName() + TEXT(":") + Name));
	}
	FString Error;
	FSimulatedObject* Expression = Editor.CreateObject(Class, Material, Name, Error);
	if (!Expression)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	if (FSimulatedValue* Owner = FindValue(Expression, TEXT("Material")))
	{
		Owner->Object = Material;
	}
	// CreateMaterialExpression turns R and G on for a new component mask (unreal-behaviour-world-assets.md §5.2).
	const FSimulatedType* ComponentMaskClass = Editor.FindTypeByPath(SimulatedComponentMaskClassPath);
	if (ComponentMaskClass && Class->IsChildOf(ComponentMaskClass))
	{
		FindValue(Expression, TEXT("R"))->Bool = true;
		FindValue(Expression, TEXT("G"))->Bool = true;
	}
	// ValidateParameterName(false): a taken name becomes Name_1, Name_2...
	FSimulatedValue* ParameterName = IsParameterExpressionClass(ClassPath) ? FindValue(Expression, TEXT("ParameterName")) : nullptr;
	if (ParameterName)
	{
		const FString BaseName = ParameterName->Text;
		for (int32 Suffix = 1; IsParameterNameTaken(Material, Expression, ParameterName->Text); ++Suffix)
		{
			ParameterName->Text = FString::Printf(TEXT("%s_%d"), *BaseName, Suffix);
		}
	}
	return FSimulatedEditorPort::ToHandle(Expression);
}

void FSimulatedMaterialAuthoring::DiscardExpression(FZorvekMCPBridgeObjectHandle Handle)
{
	FSimulatedObject* Expression = FSimulatedEditorPort::ToObject(Handle);
	if (!Expression)
	{
		return;
	}
	// Renamed into the transient package, as the editor does with an object it throws away.
	FSimulatedObject* Transient = Editor.FindOrCreatePackage(SimulatedTransientPackageName);
	FString Error;
	for (int32 Attempt = 0; !Editor.RenameObject(Expression, Transient, FString::Printf(TEXT("TRASH_%s_%d"), *Expression->Name, Attempt), Error); ++Attempt)
	{
	}
	if (FSimulatedValue* Owner = FindValue(Expression, TEXT("Material")))
	{
		Owner->Object = nullptr;
	}
}

void FSimulatedMaterialAuthoring::SetParameterName(FZorvekMCPBridgeObjectHandle Handle, const FString& ParameterName)
{
	if (FSimulatedValue* Value = FindValue(FSimulatedEditorPort::ToObject(Handle), TEXT("ParameterName")))
	{
		// FName("None") is NAME_None, kept as the empty name.
		Value->Text = ParameterName.Equals(TEXT("None"), ESearchCase::IgnoreCase) ? FString() : ParameterName;
	}
}

void FSimulatedMaterialAuthoring::SetDescription(FZorvekMCPBridgeObjectHandle Handle, const FString& Description)
{
	if (FSimulatedValue* Value = FindValue(FSimulatedEditorPort::ToObject(Handle), TEXT("Desc")))
	{
		Value->Text = Description;
	}
}

void FSimulatedMaterialAuthoring::AddExpression(FZorvekMCPBridgeObjectHandle MaterialHandle, FZorvekMCPBridgeObjectHandle Handle, int32 PosX, int32 PosY)
{
	FSimulatedObject* Material = FSimulatedEditorPort::ToObject(MaterialHandle);
	FSimulatedObject* Expression = FSimulatedEditorPort::ToObject(Handle);
	FSimulatedObject* EditorOnlyData = GetEditorOnlyData(Material);
	const FSimulatedProperty* CollectionProperty = nullptr;
	FSimulatedValue* Collection = FindValue(EditorOnlyData, TEXT("ExpressionCollection"), &CollectionProperty);
	FSimulatedValue* Expressions = Collection ? FindField(*CollectionProperty, *Collection, TEXT("Expressions")) : nullptr;
	if (!Expression || !Expressions)
	{
		return;
	}
	FSimulatedValue Element;
	Element.Object = Expression;
	Expressions->Items.push_back(Element);
	FindValue(Expression, TEXT("MaterialExpressionEditorX"))->Integer = PosX;
	FindValue(Expression, TEXT("MaterialExpressionEditorY"))->Integer = PosY;
	// UpdateMaterialExpressionGuid(true) and, for parameters, UpdateParameterGuid(true).
	FString Error;
	Editor.SetPropertyText(Expression, TEXT("MaterialExpressionGuid"), MakeNewGuidText(), Error);
	if (FindValue(Expression, TEXT("ExpressionGUID")))
	{
		Editor.SetPropertyText(Expression, TEXT("ExpressionGUID"), MakeNewGuidText(), Error);
	}
	MarkPackageDirty(Material);
}

bool FSimulatedMaterialAuthoring::ConnectExpressionInput(FZorvekMCPBridgeObjectHandle SourceHandle, int32 OutputIndex, FZorvekMCPBridgeObjectHandle TargetHandle, int32 InputIndex)
{
	FSimulatedObject* Source = FSimulatedEditorPort::ToObject(SourceHandle);
	FSimulatedObject* Target = FSimulatedEditorPort::ToObject(TargetHandle);
	const FSimulatedType* InputStruct = Editor.FindTypeByPath(SimulatedExpressionInputStructPath);
	if (!Source || !Target || !InputStruct)
	{
		return false;
	}
	// GetInput order: the expression's input properties in field order, deprecated ones left out.
	int32 Seen = 0;
	for (size_t Index = 0; Index < Target->Class->AllProperties.size(); ++Index)
	{
		const FSimulatedProperty& Property = *Target->Class->AllProperties[Index];
		const bool bIsInput = Property.Type == ESimulatedPropertyType::Struct && Property.TypeObject->IsChildOf(InputStruct) && (Property.Flags & ZorvekMCPBridgePropertyFlags::Deprecated) == 0;
		if (bIsInput && Seen++ == InputIndex)
		{
			FSimulatedValue& Input = Target->Values[Index];
			const FSimulatedExpressionClassInfo* Info = FindOutputsInfo(Source->Class);
			const FZorvekMCPBridgeMaterialMask Mask = Info && OutputIndex < Info->Outputs.Num() ? Info->Outputs[OutputIndex].Mask : FZorvekMCPBridgeMaterialMask();
			FindField(Property, Input, TEXT("Expression"))->Object = Source;
			FindField(Property, Input, TEXT("OutputIndex"))->Integer = OutputIndex;
			FindField(Property, Input, TEXT("Mask"))->Integer = Mask.Mask;
			FindField(Property, Input, TEXT("MaskR"))->Integer = Mask.MaskR;
			FindField(Property, Input, TEXT("MaskG"))->Integer = Mask.MaskG;
			FindField(Property, Input, TEXT("MaskB"))->Integer = Mask.MaskB;
			FindField(Property, Input, TEXT("MaskA"))->Integer = Mask.MaskA;
			return true;
		}
	}
	return false;
}

bool FSimulatedMaterialAuthoring::ConnectRootInput(FZorvekMCPBridgeObjectHandle MaterialHandle, const FString& RootProperty, FZorvekMCPBridgeObjectHandle SourceHandle, int32 OutputIndex)
{
	FSimulatedObject* Source = FSimulatedEditorPort::ToObject(SourceHandle);
	FSimulatedObject* EditorOnlyData = GetEditorOnlyData(FSimulatedEditorPort::ToObject(MaterialHandle));
	const FSimulatedType* InputStruct = Editor.FindTypeByPath(SimulatedExpressionInputStructPath);
	const FSimulatedProperty* Property = nullptr;
	FSimulatedValue* Input = FindValue(EditorOnlyData, RootProperty, &Property);
	if (!Source || !Input || !InputStruct || Property->Type != ESimulatedPropertyType::Struct || !Property->TypeObject->IsChildOf(InputStruct))
	{
		return false;
	}
	const FSimulatedExpressionClassInfo* Info = FindOutputsInfo(Source->Class);
	const FZorvekMCPBridgeMaterialMask Mask = Info && OutputIndex < Info->Outputs.Num() ? Info->Outputs[OutputIndex].Mask : FZorvekMCPBridgeMaterialMask();
	FindField(*Property, *Input, TEXT("Expression"))->Object = Source;
	FindField(*Property, *Input, TEXT("OutputIndex"))->Integer = OutputIndex;
	FindField(*Property, *Input, TEXT("Mask"))->Integer = Mask.Mask;
	FindField(*Property, *Input, TEXT("MaskR"))->Integer = Mask.MaskR;
	FindField(*Property, *Input, TEXT("MaskG"))->Integer = Mask.MaskG;
	FindField(*Property, *Input, TEXT("MaskB"))->Integer = Mask.MaskB;
	FindField(*Property, *Input, TEXT("MaskA"))->Integer = Mask.MaskA;
	return true;
}

void FSimulatedMaterialAuthoring::AddComment(FZorvekMCPBridgeObjectHandle MaterialHandle, const FString& Text, int32 PosX, int32 PosY, int32 Width, int32 Height)
{
	FSimulatedObject* Material = FSimulatedEditorPort::ToObject(MaterialHandle);
	FSimulatedType* CommentClass = Editor.FindTypeByPath(TEXT("/Script/Engine.MaterialExpressionComment"));
	const FSimulatedProperty* CollectionProperty = nullptr;
	FSimulatedValue* Collection = FindValue(GetEditorOnlyData(Material), TEXT("ExpressionCollection"), &CollectionProperty);
	FSimulatedValue* Comments = Collection ? FindField(*CollectionProperty, *Collection, TEXT("EditorComments")) : nullptr;
	if (!CommentClass || !Comments)
	{
		return;
	}
	FString Name;
	do
	{
		Name = FString::Printf(TEXT("%s_%d"), *CommentClass->Name, ClassUnique[CommentClass]++);
	}
	while (Editor.FindObject(Material->GetPathName() + TEXT(":") + Name));
	FString Error;
	FSimulatedObject* Comment = Editor.CreateObject(CommentClass, Material, Name, Error);
	FindValue(Comment, TEXT("Material"))->Object = Material;
	FindValue(Comment, TEXT("Text"))->Text = Text;
	FindValue(Comment, TEXT("MaterialExpressionEditorX"))->Integer = PosX;
	FindValue(Comment, TEXT("MaterialExpressionEditorY"))->Integer = PosY;
	FindValue(Comment, TEXT("SizeX"))->Integer = Width;
	FindValue(Comment, TEXT("SizeY"))->Integer = Height;
	Editor.SetPropertyText(Comment, TEXT("MaterialExpressionGuid"), MakeNewGuidText(), Error);
	FSimulatedValue Element;
	Element.Object = Comment;
	Comments->Items.push_back(Element);
	MarkPackageDirty(Material);
}

FZorvekMCPBridgeObjectHandle FSimulatedMaterialAuthoring::CreateMaterialInstance(const FString& PackageName, const FString& AssetName, FZorvekMCPBridgeObjectHandle ParentHandle, FString& OutError)
{
	FSimulatedType* InstanceClass = Editor.FindTypeByPath(TEXT("/Script/Engine.MaterialInstanceConstant"));
	FSimulatedObject* Parent = FSimulatedEditorPort::ToObject(ParentHandle);
	if (!InstanceClass || !Parent)
	{
		OutError = InstanceClass ? TEXT("the parent is not a material.") : TEXT("the project's engine types have no MaterialInstanceConstant class.");
		return FZorvekMCPBridgeObjectHandle();
	}
	FSimulatedObject* Instance = Editor.CreateObject(InstanceClass, Editor.FindOrCreatePackage(PackageName), AssetName, OutError);
	if (!Instance)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	FindValue(Instance, TEXT("Parent"))->Object = Parent;
	MarkPackageDirty(Instance);
	return FSimulatedEditorPort::ToHandle(Instance);
}

bool FSimulatedMaterialAuthoring::SetInstanceScalarParameter(FZorvekMCPBridgeObjectHandle Instance, const FString& ParameterName, float Value)
{
	return SetInstanceParameter(FSimulatedEditorPort::ToObject(Instance), TEXT("ScalarParameterValues"), ParameterName, FString::Printf(TEXT("%f"), Value));
}

bool FSimulatedMaterialAuthoring::SetInstanceTextureParameter(FZorvekMCPBridgeObjectHandle Instance, const FString& ParameterName, FZorvekMCPBridgeObjectHandle Texture)
{
	const FSimulatedObject* TextureObject = FSimulatedEditorPort::ToObject(Texture);
	return TextureObject && SetInstanceParameter(FSimulatedEditorPort::ToObject(Instance), TEXT("TextureParameterValues"), ParameterName, FString::Printf(TEXT("\"%s\""), *TextureObject->GetPathName()));
}

bool FSimulatedMaterialAuthoring::SetInstanceParameter(FSimulatedObject* Instance, const TCHAR* ArrayName, const FString& ParameterName, const FString& ValueText)
{
	const FSimulatedType* InstanceClass = Editor.FindTypeByPath(TEXT("/Script/Engine.MaterialInstanceConstant"));
	const FSimulatedProperty* ArrayProperty = nullptr;
	FSimulatedValue* Entries = Instance && InstanceClass && Instance->Class->IsChildOf(InstanceClass) ? FindValue(Instance, ArrayName, &ArrayProperty) : nullptr;
	if (!Entries)
	{
		return false;
	}
	const FSimulatedProperty& EntryProperty = *ArrayProperty->Inner;
	FSimulatedValue* Entry = nullptr;
	for (FSimulatedValue& Candidate : Entries->Items)
	{
		FSimulatedValue* Info = FindField(EntryProperty, Candidate, TEXT("ParameterInfo"));
		const FSimulatedProperty* InfoProperty = EntryProperty.TypeObject->AllProperties[(size_t)EntryProperty.TypeObject->FindPropertyIndex(TEXT("ParameterInfo"))];
		if (Info && FindField(*InfoProperty, *Info, TEXT("Name"))->Text.Equals(ParameterName, ESearchCase::IgnoreCase))
		{
			Entry = &Candidate;
		}
	}
	if (!Entry)
	{
		Entries->Items.push_back(Editor.MakeDefaultValue(EntryProperty));
		Entry = &Entries->Items.back();
	}
	FString Error;
	return Editor.ImportValueText(EntryProperty, *Entry, FString::Printf(TEXT("(ParameterInfo=(Name=\"%s\",Association=GlobalParameter,Index=-1),ParameterValue=%s)"), *ParameterName, *ValueText), Error, Instance);
}

void FSimulatedMaterialAuthoring::NotifyMaterialEdited(FZorvekMCPBridgeObjectHandle MaterialHandle)
{
	FSimulatedObject* Material = FSimulatedEditorPort::ToObject(MaterialHandle);
	if (!Material)
	{
		return;
	}
	MarkPackageDirty(Material);
	// PostEditChange recompiles in the editor; here only the call is recorded.
	++PostEditChangeCounts[Material];
}

int32 FSimulatedMaterialAuthoring::GetPostEditChangeCount(FZorvekMCPBridgeObjectHandle Material) const
{
	const auto Found = PostEditChangeCounts.find(FSimulatedEditorPort::ToObject(Material));
	return Found != PostEditChangeCounts.end() ? Found->second : 0;
}

FSimulatedObject* FSimulatedMaterialAuthoring::GetEditorOnlyData(FSimulatedObject* Material) const
{
	const FSimulatedValue* Value = Material ? FindValue(Material, TEXT("EditorOnlyData")) : nullptr;
	return Value ? Value->Object : nullptr;
}

void FSimulatedMaterialAuthoring::MarkPackageDirty(FSimulatedObject* Object)
{
	Port.GetAssetAuthoring().MarkPackageDirty(FSimulatedEditorPort::ToHandle(Object));
}

bool FSimulatedMaterialAuthoring::IsParameterNameTaken(FSimulatedObject* Material, const FSimulatedObject* Except, const FString& Name) const
{
	const FSimulatedProperty* CollectionProperty = nullptr;
	FSimulatedValue* Collection = FindValue(GetEditorOnlyData(Material), TEXT("ExpressionCollection"), &CollectionProperty);
	const FSimulatedValue* Expressions = Collection ? FindField(*CollectionProperty, *Collection, TEXT("Expressions")) : nullptr;
	for (size_t Index = 0; Expressions && Index < Expressions->Items.size(); ++Index)
	{
		FSimulatedObject* Other = Expressions->Items[Index].Object;
		const FSimulatedValue* OtherName = Other && Other != Except && IsParameterExpressionClass(Other->Class->GetPathName()) ? FindValue(Other, TEXT("ParameterName")) : nullptr;
		if (OtherName && OtherName->Text.Equals(Name, ESearchCase::IgnoreCase))
		{
			return true;
		}
	}
	return false;
}

FString FSimulatedMaterialAuthoring::MakeNewGuidText()
{
	// FGuid::NewGuid is random; so is this, from a per-editor generator.
	std::mt19937 Generator(GuidSeed++);
	return FString::Printf(TEXT("%08X%08X%08X%08X"), (uint32)Generator(), (uint32)Generator(), (uint32)Generator(), (uint32)Generator());
}
