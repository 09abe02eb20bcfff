#include "SimulatedEditorPort.h"

namespace
{
	const TCHAR* const ExpressionInputStructPath = TEXT("/Script/Engine.ExpressionInput");

	const FSimulatedProperty* AsProperty(const FZorvekMCPBridgePropertyCursor& Cursor)
	{
		return static_cast<const FSimulatedProperty*>(Cursor.GetPropertyPtr());
	}

	FSimulatedValue* AsValue(const FZorvekMCPBridgePropertyCursor& Cursor)
	{
		return static_cast<FSimulatedValue*>(Cursor.GetValuePtr());
	}

	bool MatchesPackagePath(const FString& PackagePath, const FZorvekMCPBridgeAssetFilter& Filter)
	{
		if (Filter.PackagePaths.IsEmpty())
		{
			return true;
		}
		for (const FString& Root : Filter.PackagePaths)
		{
			if (PackagePath.Equals(Root, ESearchCase::IgnoreCase))
			{
				return true;
			}
			if (Filter.bRecursivePaths && PackagePath.Len() > Root.Len() && PackagePath[Root.Len()] == TEXT('/') && PackagePath.StartsWith(Root, ESearchCase::IgnoreCase))
			{
				return true;
			}
		}
		return false;
	}
}

class FSimulatedEditorPort::FAssetRegistry : public IZorvekMCPBridgeAssetRegistry
{
public:
	explicit FAssetRegistry(FSimulatedEditor& InEditor)
		: Editor(InEditor)
	{
	}

	void EnumerateAssets(const FZorvekMCPBridgeAssetFilter& Filter, TFunctionRef<bool(const FZorvekMCPBridgeAssetData&)> Callback) const override
	{
		// As the engine: a filter that restricts nothing passes nothing.
		if (Filter.PackagePaths.IsEmpty() && Filter.ClassPaths.IsEmpty())
		{
			return;
		}
		TArray<const FSimulatedType*> Classes;
		for (const FString& ClassPath : Filter.ClassPaths)
		{
			Classes.Add(Editor.FindType(ESimulatedTypeKind::Class, ClassPath));
		}
		// Loaded assets come first, as the engine's registry lists its in-memory results before
		// its disk state; those without an entry would otherwise not be listed at all.
		for (const FSimulatedObject* Loaded : Editor.GetUnregisteredLoadedAssets())
		{
			const FZorvekMCPBridgeAssetData Asset = Editor.MakeAssetData(Loaded);
			if (MatchesPackagePath(Asset.PackagePath, Filter) && MatchesClass(Asset, Filter, Classes) && !Callback(Asset))
			{
				return;
			}
		}
		for (const FZorvekMCPBridgeAssetData& Asset : Editor.GetRegistry())
		{
			if (!MatchesPackagePath(Asset.PackagePath, Filter) || !MatchesClass(Asset, Filter, Classes))
			{
				continue;
			}
			if (!Callback(Asset))
			{
				return;
			}
		}
	}

	TArray<FZorvekMCPBridgeAssetData> GetAssetsByPackageName(const FString& PackageName) const override
	{
		TArray<FZorvekMCPBridgeAssetData> Assets;
		for (const FSimulatedObject* Loaded : Editor.GetUnregisteredLoadedAssets())
		{
			if (Loaded->GetOutermost()->Name.Equals(PackageName, ESearchCase::IgnoreCase))
			{
				Assets.Add(Editor.MakeAssetData(Loaded));
			}
		}
		for (const FZorvekMCPBridgeAssetData* Entry : Editor.FindRegistryEntries(PackageName))
		{
			Assets.Add(*Entry);
		}
		return Assets;
	}

private:
	bool MatchesClass(const FZorvekMCPBridgeAssetData& Asset, const FZorvekMCPBridgeAssetFilter& Filter, const TArray<const FSimulatedType*>& Classes) const
	{
		if (Filter.ClassPaths.IsEmpty())
		{
			return true;
		}
		for (int32 Index = 0; Index < Filter.ClassPaths.Num(); ++Index)
		{
			if (Asset.AssetClassPath.Equals(Filter.ClassPaths[Index], ESearchCase::IgnoreCase))
			{
				return true;
			}
			if (Filter.bRecursiveClasses && Classes[Index])
			{
				const FSimulatedType* AssetClass = Editor.FindType(ESimulatedTypeKind::Class, Asset.AssetClassPath);
				if (AssetClass && AssetClass->IsChildOf(Classes[Index]))
				{
					return true;
				}
			}
		}
		return false;
	}

	FSimulatedEditor& Editor;
};

class FSimulatedEditorPort::FObjects : public IZorvekMCPBridgeObjects
{
public:
	explicit FObjects(FSimulatedEditor& InEditor)
		: Editor(InEditor)
	{
	}

	FZorvekMCPBridgeObjectHandle LoadObject(const FString& ObjectPath) override
	{
		FSimulatedObject* Object = Editor.FindObject(ObjectPath);
		// A package that fails to load takes its objects with it.
		for (const FSimulatedObject* Current = Object; Current; Current = Current->Outer)
		{
			if (!Current->bLoadable)
			{
				return FZorvekMCPBridgeObjectHandle();
			}
		}
		return ToHandle(Object);
	}

	FZorvekMCPBridgeObjectHandle FindObject(const FString& ObjectPath) const override
	{
		return ToHandle(Editor.FindObject(ObjectPath));
	}

	FZorvekMCPBridgeObjectIdentity GetIdentity(FZorvekMCPBridgeObjectHandle Handle) const override
	{
		FZorvekMCPBridgeObjectIdentity Identity;
		if (const FSimulatedObject* Object = ToObject(Handle))
		{
			Identity.ObjectPath = Object->GetPathName();
			Identity.PackagePath = Object->GetOutermost()->Name;
			Identity.Name = Object->Name;
			Identity.ClassPath = Object->Class->GetPathName();
			Identity.ClassName = Object->Class->Name;
		}
		return Identity;
	}

	FZorvekMCPBridgeTypeInfo GetClassInfo(FZorvekMCPBridgeObjectHandle Handle) const override
	{
		const FSimulatedObject* Object = ToObject(Handle);
		return Object ? MakeTypeInfo(*Object->Class) : FZorvekMCPBridgeTypeInfo();
	}

	bool IsA(FZorvekMCPBridgeObjectHandle Handle, const FString& ClassPath) const override
	{
		const FSimulatedObject* Object = ToObject(Handle);
		const FSimulatedType* Class = Editor.FindType(ESimulatedTypeKind::Class, ClassPath);
		return Object && Class && ClassPath.Contains(TEXT("/")) && Object->Class->IsChildOf(Class);
	}

	bool FindType(EZorvekMCPBridgeTypeKind Kind, const FString& PathOrShortName, FZorvekMCPBridgeTypeInfo& OutType) const override
	{
		const ESimulatedTypeKind SimulatedKind = Kind == EZorvekMCPBridgeTypeKind::Class ? ESimulatedTypeKind::Class : (Kind == EZorvekMCPBridgeTypeKind::Struct ? ESimulatedTypeKind::Struct : ESimulatedTypeKind::Enum);
		const FSimulatedType* Type = Editor.FindType(SimulatedKind, PathOrShortName);
		if (!Type)
		{
			return false;
		}
		OutType = MakeTypeInfo(*Type);
		return true;
	}

	bool LoadClass(const FString& ClassPath, FZorvekMCPBridgeTypeInfo& OutClass) override
	{
		// Everything is in memory; a class path that finds nothing would not load either.
		return ClassPath.Contains(TEXT("/")) && FindType(EZorvekMCPBridgeTypeKind::Class, ClassPath, OutClass);
	}

	bool IsChildOf(const FString& ClassPath, const FString& BaseClassPath) const override
	{
		const FSimulatedType* Class = Editor.FindType(ESimulatedTypeKind::Class, ClassPath);
		const FSimulatedType* Base = Editor.FindType(ESimulatedTypeKind::Class, BaseClassPath);
		return Class && Base && Class->IsChildOf(Base);
	}

private:
	static FZorvekMCPBridgeTypeInfo MakeTypeInfo(const FSimulatedType& Type)
	{
		FZorvekMCPBridgeTypeInfo Info;
		Info.Path = Type.GetPathName();
		Info.Name = Type.Name;
		Info.SuperPath = Type.Super ? Type.Super->GetPathName() : FString();
		Info.ClassFlags = Type.ClassFlags;
		if (Type.Kind == ESimulatedTypeKind::Class)
		{
			const FSimulatedType* Native = &Type;
			while (Native && (Native->ClassFlags & ZorvekMCPBridgeClassFlags::Native) == 0)
			{
				Native = Native->Super;
			}
			if (Native)
			{
				Info.NativeClassPath = Native->GetPathName();
				Info.NativeClassName = Native->Name;
			}
		}
		return Info;
	}

	FSimulatedEditor& Editor;
};

class FSimulatedEditorPort::FReflection : public IZorvekMCPBridgeReflection
{
public:
	explicit FReflection(FSimulatedEditor& InEditor)
		: Editor(InEditor)
	{
	}

	void EnumerateProperties(FZorvekMCPBridgeObjectHandle Handle, TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const override
	{
		FSimulatedObject* Object = ToObject(Handle);
		if (!Object)
		{
			return;
		}
		for (size_t Index = 0; Index < Object->Class->AllProperties.size(); ++Index)
		{
			if (!Callback(FZorvekMCPBridgePropertyCursor(this, Object->Class->AllProperties[Index], &Object->Values[Index], Handle)))
			{
				return;
			}
		}
	}

	FZorvekMCPBridgePropertyCursor FindProperty(FZorvekMCPBridgeObjectHandle Handle, const FString& PropertyName) const override
	{
		FSimulatedObject* Object = ToObject(Handle);
		const int32 Index = Object ? Object->Class->FindPropertyIndex(PropertyName) : INDEX_NONE;
		if (Index == INDEX_NONE)
		{
			return FZorvekMCPBridgePropertyCursor();
		}
		return FZorvekMCPBridgePropertyCursor(this, Object->Class->AllProperties[(size_t)Index], &Object->Values[(size_t)Index], Handle);
	}

	bool ImportText(const FZorvekMCPBridgePropertyCursor& Value, const FString& Text) const override
	{
		FString Error;
		return Value.IsValid() && Editor.ImportValueText(*AsProperty(Value), *AsValue(Value), Text, Error, ToObject(Value.GetOwner()));
	}

	FString GetPropertyName(const FZorvekMCPBridgePropertyCursor& Value) const override
	{
		return AsProperty(Value)->Name.IsEmpty() ? FString(TEXT("None")) : AsProperty(Value)->Name;
	}

	FString GetPropertyCppType(const FZorvekMCPBridgePropertyCursor& Value) const override
	{
		return Editor.GetCppType(*AsProperty(Value));
	}

	uint64 GetPropertyFlags(const FZorvekMCPBridgePropertyCursor& Value) const override
	{
		return AsProperty(Value)->Flags;
	}

	EZorvekMCPBridgePropertyKind GetPropertyKind(const FZorvekMCPBridgePropertyCursor& Value) const override
	{
		switch (AsProperty(Value)->Type)
		{
		case ESimulatedPropertyType::Object:
		case ESimulatedPropertyType::SoftObject:
		case ESimulatedPropertyType::Class:
			return EZorvekMCPBridgePropertyKind::ObjectReference;
		case ESimulatedPropertyType::Struct:
			return EZorvekMCPBridgePropertyKind::Struct;
		case ESimulatedPropertyType::Array:
			return EZorvekMCPBridgePropertyKind::Array;
		default:
			return EZorvekMCPBridgePropertyKind::Leaf;
		}
	}

	bool ExportText(const FZorvekMCPBridgePropertyCursor& Value, FString& OutText) const override
	{
		// Fails only for a property the fixture marks unexportable.
		return Editor.ExportValueText(*AsProperty(Value), *AsValue(Value), false, OutText, ToObject(Value.GetOwner()));
	}

	FZorvekMCPBridgeObjectHandle GetReferencedObject(const FZorvekMCPBridgePropertyCursor& Value) const override
	{
		return ToHandle(AsValue(Value)->Object);
	}

	int32 GetArrayNum(const FZorvekMCPBridgePropertyCursor& Value) const override
	{
		return (int32)AsValue(Value)->Items.size();
	}

	FString GetArrayElementCppType(const FZorvekMCPBridgePropertyCursor& Value) const override
	{
		return Editor.GetCppType(*AsProperty(Value)->Inner);
	}

	FZorvekMCPBridgePropertyCursor GetArrayElement(const FZorvekMCPBridgePropertyCursor& Value, int32 Index) const override
	{
		return FZorvekMCPBridgePropertyCursor(this, AsProperty(Value)->Inner.get(), &AsValue(Value)->Items[(size_t)Index], Value.GetOwner());
	}

	FString GetStructName(const FZorvekMCPBridgePropertyCursor& Value) const override
	{
		return AsProperty(Value)->TypeObject->Name;
	}

	FString GetStructPath(const FZorvekMCPBridgePropertyCursor& Value) const override
	{
		return AsProperty(Value)->TypeObject->GetPathName();
	}

	void EnumerateStructFields(const FZorvekMCPBridgePropertyCursor& Value, TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const override
	{
		const FSimulatedType* Struct = AsProperty(Value)->TypeObject;
		FSimulatedValue* StructValue = AsValue(Value);
		for (size_t Index = 0; Index < Struct->AllProperties.size() && Index < StructValue->Items.size(); ++Index)
		{
			if (!Callback(FZorvekMCPBridgePropertyCursor(this, Struct->AllProperties[Index], &StructValue->Items[Index], Value.GetOwner())))
			{
				return;
			}
		}
	}

	FZorvekMCPBridgePropertyCursor FindStructField(const FZorvekMCPBridgePropertyCursor& Value, const FString& FieldName) const override
	{
		const FSimulatedType* Struct = AsProperty(Value)->TypeObject;
		const int32 Index = Struct->FindPropertyIndex(FieldName);
		if (Index == INDEX_NONE || (size_t)Index >= AsValue(Value)->Items.size())
		{
			return FZorvekMCPBridgePropertyCursor();
		}
		return FZorvekMCPBridgePropertyCursor(this, Struct->AllProperties[(size_t)Index], &AsValue(Value)->Items[(size_t)Index], Value.GetOwner());
	}

private:
	FSimulatedEditor& Editor;
};

// Materials as the engine keeps them since 5.1: the graph lives in the material's editor-only
// data object (root inputs as ExpressionInput struct properties, the expression collection with
// its expressions and comments).
class FSimulatedEditorPort::FMaterials : public IZorvekMCPBridgeMaterials
{
public:
	FMaterials(FSimulatedEditor& InEditor, FSimulatedEditorPort& InPort)
		: Editor(InEditor)
		, Authoring(InEditor, InPort)
	{
	}

	// The write side lives in SimulatedMaterialAuthoring.cpp.
	FZorvekMCPBridgeObjectHandle CreateMaterial(const FString& PackageName, const FString& AssetName, FString& OutError) override { return Authoring.CreateMaterial(PackageName, AssetName, OutError); }
	bool IsParameterExpressionClass(const FString& ClassPath) const override { return Authoring.IsParameterExpressionClass(ClassPath); }
	FZorvekMCPBridgeObjectHandle NewExpression(FZorvekMCPBridgeObjectHandle Material, const FString& ClassPath, const FString& NodeName) override { return Authoring.NewExpression(Material, ClassPath, NodeName); }
	void DiscardExpression(FZorvekMCPBridgeObjectHandle Expression) override { Authoring.DiscardExpression(Expression); }
	void SetParameterName(FZorvekMCPBridgeObjectHandle Expression, const FString& ParameterName) override { Authoring.SetParameterName(Expression, ParameterName); }
	void SetDescription(FZorvekMCPBridgeObjectHandle Expression, const FString& Description) override { Authoring.SetDescription(Expression, Description); }
	void AddExpression(FZorvekMCPBridgeObjectHandle Material, FZorvekMCPBridgeObjectHandle Expression, int32 PosX, int32 PosY) override { Authoring.AddExpression(Material, Expression, PosX, PosY); }
	bool ConnectExpressionInput(FZorvekMCPBridgeObjectHandle Source, int32 OutputIndex, FZorvekMCPBridgeObjectHandle Target, int32 InputIndex) override { return Authoring.ConnectExpressionInput(Source, OutputIndex, Target, InputIndex); }
	bool ConnectRootInput(FZorvekMCPBridgeObjectHandle Material, const FString& RootProperty, FZorvekMCPBridgeObjectHandle Source, int32 OutputIndex) override { return Authoring.ConnectRootInput(Material, RootProperty, Source, OutputIndex); }
	void AddComment(FZorvekMCPBridgeObjectHandle Material, const FString& Text, int32 PosX, int32 PosY, int32 Width, int32 Height) override { Authoring.AddComment(Material, Text, PosX, PosY, Width, Height); }
	FZorvekMCPBridgeObjectHandle CreateMaterialInstance(const FString& PackageName, const FString& AssetName, FZorvekMCPBridgeObjectHandle Parent, FString& OutError) override { return Authoring.CreateMaterialInstance(PackageName, AssetName, Parent, OutError); }
	bool SetInstanceScalarParameter(FZorvekMCPBridgeObjectHandle Instance, const FString& ParameterName, float Value) override { return Authoring.SetInstanceScalarParameter(Instance, ParameterName, Value); }
	bool SetInstanceTextureParameter(FZorvekMCPBridgeObjectHandle Instance, const FString& ParameterName, FZorvekMCPBridgeObjectHandle Texture) override { return Authoring.SetInstanceTextureParameter(Instance, ParameterName, Texture); }
	void NotifyMaterialEdited(FZorvekMCPBridgeObjectHandle Material) override { Authoring.NotifyMaterialEdited(Material); }

	bool ReadMaterial(FZorvekMCPBridgeObjectHandle Handle, const TArray<FString>& RootProperties, FZorvekMCPBridgeMaterialSnapshot& OutSnapshot) const override
	{
		FSimulatedObject* Material = ToObject(Handle);
		const FSimulatedType* MaterialClass = Editor.FindTypeByPath(TEXT("/Script/Engine.Material"));
		if (!Material || !MaterialClass || !Material->Class->IsChildOf(MaterialClass))
		{
			return false;
		}
		OutSnapshot = FZorvekMCPBridgeMaterialSnapshot();
		OutSnapshot.MaterialDomain = ExportProperty(Material, TEXT("MaterialDomain"));
		OutSnapshot.BlendMode = ExportProperty(Material, TEXT("BlendMode"));
		OutSnapshot.bTwoSided = GetValue(Material, TEXT("TwoSided")) && GetValue(Material, TEXT("TwoSided"))->Bool;
		OutSnapshot.bUseMaterialAttributes = GetValue(Material, TEXT("bUseMaterialAttributes")) && GetValue(Material, TEXT("bUseMaterialAttributes"))->Bool;

		const FSimulatedValue* EditorDataValue = GetValue(Material, TEXT("EditorOnlyData"));
		FSimulatedObject* EditorData = EditorDataValue ? EditorDataValue->Object : nullptr;
		for (const FString& RootName : RootProperties)
		{
			FZorvekMCPBridgeMaterialInputSnapshot Input;
			const FSimulatedProperty* Property = nullptr;
			const FSimulatedValue* InputValue = EditorData ? GetValue(EditorData, RootName, &Property) : nullptr;
			if (InputValue && IsExpressionInput(*Property))
			{
				Input = MakeInput(*Property, *InputValue);
			}
			else
			{
				Input.RawInputName = TEXT("None");
			}
			Input.InputName = RootName;
			OutSnapshot.RootInputs.Add(Input);
		}

		const FSimulatedProperty* CollectionProperty = nullptr;
		const FSimulatedValue* Collection = EditorData ? GetValue(EditorData, TEXT("ExpressionCollection"), &CollectionProperty) : nullptr;
		if (!Collection)
		{
			return true;
		}
		const FSimulatedValue* Expressions = GetField(*CollectionProperty, *Collection, TEXT("Expressions"));
		for (size_t Index = 0; Expressions && Index < Expressions->Items.size(); ++Index)
		{
			if (FSimulatedObject* Expression = Expressions->Items[Index].Object)
			{
				OutSnapshot.Expressions.Add(MakeExpression(Expression));
			}
		}
		const FSimulatedValue* Comments = GetField(*CollectionProperty, *Collection, TEXT("EditorComments"));
		for (size_t Index = 0; Comments && Index < Comments->Items.size(); ++Index)
		{
			if (FSimulatedObject* Comment = Comments->Items[Index].Object)
			{
				FZorvekMCPBridgeMaterialCommentSnapshot Snapshot;
				Snapshot.NodeGuid = ExportProperty(Comment, TEXT("MaterialExpressionGuid"));
				Snapshot.Text = GetValue(Comment, TEXT("Text")) ? GetValue(Comment, TEXT("Text"))->Text : FString();
				Snapshot.PosX = GetInteger(Comment, TEXT("MaterialExpressionEditorX"));
				Snapshot.PosY = GetInteger(Comment, TEXT("MaterialExpressionEditorY"));
				Snapshot.Width = GetInteger(Comment, TEXT("SizeX"));
				Snapshot.Height = GetInteger(Comment, TEXT("SizeY"));
				OutSnapshot.Comments.Add(Snapshot);
			}
		}
		return true;
	}

private:
	static const FSimulatedValue* GetValue(FSimulatedObject* Object, const FString& PropertyName, const FSimulatedProperty** OutProperty = nullptr)
	{
		const int32 Index = Object->Class->FindPropertyIndex(PropertyName);
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

	static const FSimulatedValue* GetField(const FSimulatedProperty& StructProperty, const FSimulatedValue& StructValue, const FString& FieldName)
	{
		if (StructProperty.Type != ESimulatedPropertyType::Struct)
		{
			return nullptr;
		}
		const int32 Index = StructProperty.TypeObject->FindPropertyIndex(FieldName);
		return Index != INDEX_NONE && (size_t)Index < StructValue.Items.size() ? &StructValue.Items[(size_t)Index] : nullptr;
	}

	static int32 GetInteger(FSimulatedObject* Object, const FString& PropertyName)
	{
		const FSimulatedValue* Value = GetValue(Object, PropertyName);
		return Value ? (int32)Value->Integer : 0;
	}

	FString ExportProperty(FSimulatedObject* Object, const FString& PropertyName) const
	{
		const FSimulatedProperty* Property = nullptr;
		const FSimulatedValue* Value = GetValue(Object, PropertyName, &Property);
		FString Text;
		if (Value)
		{
			Editor.ExportValueText(*Property, *Value, false, Text, Object);
		}
		return Text;
	}

	bool IsExpressionInput(const FSimulatedProperty& Property) const
	{
		const FSimulatedType* InputStruct = Editor.FindTypeByPath(ExpressionInputStructPath);
		return Property.Type == ESimulatedPropertyType::Struct && InputStruct && Property.TypeObject->IsChildOf(InputStruct);
	}

	FZorvekMCPBridgeMaterialInputSnapshot MakeInput(const FSimulatedProperty& Property, const FSimulatedValue& Value) const
	{
		FZorvekMCPBridgeMaterialInputSnapshot Input;
		const FSimulatedValue* Source = GetField(Property, Value, TEXT("Expression"));
		const FSimulatedValue* RawName = GetField(Property, Value, TEXT("InputName"));
		Input.RawInputName = RawName && !RawName->Text.IsEmpty() ? RawName->Text : FString(TEXT("None"));
		// GetInputName: the input's own name when it has one, else the property's.
		Input.InputName = RawName && !RawName->Text.IsEmpty() ? RawName->Text : Property.Name;
		int32* Targets[] = {&Input.OutputIndex, &Input.Mask.Mask, &Input.Mask.MaskR, &Input.Mask.MaskG, &Input.Mask.MaskB, &Input.Mask.MaskA};
		const TCHAR* Fields[] = {TEXT("OutputIndex"), TEXT("Mask"), TEXT("MaskR"), TEXT("MaskG"), TEXT("MaskB"), TEXT("MaskA")};
		for (int32 Index = 0; Index < 6; ++Index)
		{
			const FSimulatedValue* Field = GetField(Property, Value, Fields[Index]);
			*Targets[Index] = Field ? (int32)Field->Integer : 0;
		}
		if (Source && Source->Object)
		{
			Input.bConnected = true;
			Input.SourceNodeGuid = ExportProperty(Source->Object, TEXT("MaterialExpressionGuid"));
			Input.SourceNodeTitle = MakeTitle(Source->Object);
			Input.SourceNodeClass = Source->Object->Class->Name;
		}
		return Input;
	}

	// Each part of the expression class info comes from the nearest class that states it, so a
	// parameter subclass keeps the outputs of the sample expression it derives from.
	template <typename PredicateType>
	static const FSimulatedExpressionClassInfo* FindExpressionInfo(const FSimulatedObject* Expression, PredicateType Predicate)
	{
		for (const FSimulatedType* Class = Expression->Class; Class; Class = Class->Super)
		{
			if (Class->ExpressionInfo && Predicate(*Class->ExpressionInfo))
			{
				return Class->ExpressionInfo.get();
			}
		}
		return nullptr;
	}

	// The caption lines, last line first, as the material editor titles a node; a line that comes
	// out empty was never added.
	FString MakeTitle(FSimulatedObject* Expression) const
	{
		const FSimulatedExpressionClassInfo* Info = FindExpressionInfo(Expression, [](const FSimulatedExpressionClassInfo& Candidate) { return !Candidate.CaptionLines.IsEmpty(); });
		if (!Info)
		{
			FString Title = Expression->Class->Name;
			Title.RemoveFromStart(TEXT("MaterialExpression"), ESearchCase::CaseSensitive);
			return Title;
		}
		TArray<FString> Lines;
		const TArray<FString>& CaptionLines = Info->CaptionLines;
		for (int32 Index = CaptionLines.Num() - 1; Index >= 0; --Index)
		{
			const FString Line = Editor.FormatCaption(*Expression, CaptionLines[Index]);
			if (!Line.IsEmpty())
			{
				Lines.Add(Line);
			}
		}
		return FString::Join(Lines, TEXT("\n"));
	}

	FZorvekMCPBridgeMaterialExpressionSnapshot MakeExpression(FSimulatedObject* Expression) const
	{
		FZorvekMCPBridgeMaterialExpressionSnapshot Snapshot;
		Snapshot.Expression = ToHandle(Expression);
		Snapshot.NodeGuid = ExportProperty(Expression, TEXT("MaterialExpressionGuid"));
		Snapshot.Title = MakeTitle(Expression);
		Snapshot.ClassName = Expression->Class->Name;
		Snapshot.Description = GetValue(Expression, TEXT("Desc")) ? GetValue(Expression, TEXT("Desc"))->Text : FString();
		Snapshot.PosX = GetInteger(Expression, TEXT("MaterialExpressionEditorX"));
		Snapshot.PosY = GetInteger(Expression, TEXT("MaterialExpressionEditorY"));

		Snapshot.bIsParameter = FindExpressionInfo(Expression, [](const FSimulatedExpressionClassInfo& Candidate) { return Candidate.bParameter; }) != nullptr;
		if (Snapshot.bIsParameter)
		{
			Snapshot.ParameterName = ExportProperty(Expression, TEXT("ParameterName"));
		}
		const FSimulatedExpressionClassInfo* OutputInfo = FindExpressionInfo(Expression, [](const FSimulatedExpressionClassInfo& Candidate) { return !Candidate.Outputs.IsEmpty(); });
		if (OutputInfo)
		{
			Snapshot.Outputs = OutputInfo->Outputs;
		}
		else
		{
			// Every expression has at least its one unnamed output.
			Snapshot.Outputs.AddDefaulted();
		}

		for (size_t Index = 0; Index < Expression->Class->AllProperties.size(); ++Index)
		{
			const FSimulatedProperty& Property = *Expression->Class->AllProperties[Index];
			if (IsExpressionInput(Property) && (Property.Flags & ZorvekMCPBridgePropertyFlags::Deprecated) == 0)
			{
				Snapshot.Inputs.Add(MakeInput(Property, Expression->Values[Index]));
			}
		}
		const FSimulatedValue* Texture = GetValue(Expression, TEXT("Texture"));
		if (Texture && Texture->Object)
		{
			Snapshot.ReferencedTextures.Add(ToHandle(Texture->Object));
		}
		return Snapshot;
	}

	FSimulatedEditor& Editor;

public:
	FSimulatedMaterialAuthoring Authoring;
};

FSimulatedEditorPort::FSimulatedEditorPort(const TSharedPtr<FSimulatedEditor>& InEditor)
	: Editor(InEditor)
	, AssetRegistry(MakeUnique<FAssetRegistry>(*InEditor))
	, Objects(MakeUnique<FObjects>(*InEditor))
	, Reflection(MakeUnique<FReflection>(*InEditor))
	, Materials(MakeUnique<FMaterials>(*InEditor, *this))
	, AssetAuthoring(MakeUnique<FSimulatedAssetAuthoring>(*InEditor, *Objects))
	, Blueprints(MakeUnique<FSimulatedBlueprintPort>(*InEditor, *AssetAuthoring))
	, Functions(MakeUnique<FSimulatedFunctions>(*InEditor, *AssetAuthoring))
	, World(MakeUnique<FSimulatedWorldPort>(*InEditor))
{
}

FSimulatedEditorPort::~FSimulatedEditorPort() = default;

FString FSimulatedEditorPort::GetEditorDescription() const
{
	return FString::Printf(TEXT("simulated editor (project %s)"), Editor->GetProjectName().IsEmpty() ? TEXT("unnamed") : *Editor->GetProjectName());
}

IZorvekMCPBridgeAssetRegistry& FSimulatedEditorPort::GetAssetRegistry()
{
	return *AssetRegistry;
}

IZorvekMCPBridgeObjects& FSimulatedEditorPort::GetObjects()
{
	return *Objects;
}

IZorvekMCPBridgeReflection& FSimulatedEditorPort::GetReflection()
{
	return *Reflection;
}

IZorvekMCPBridgeMaterials& FSimulatedEditorPort::GetMaterials()
{
	return *Materials;
}

FSimulatedMaterialAuthoring& FSimulatedEditorPort::GetSimulatedMaterialAuthoring() const
{
	return Materials->Authoring;
}

IZorvekMCPBridgeAssetAuthoring& FSimulatedEditorPort::GetAssetAuthoring()
{
	return *AssetAuthoring;
}

IZorvekMCPBridgeBlueprints& FSimulatedEditorPort::GetBlueprints()
{
	return *Blueprints;
}

IZorvekMCPBridgeFunctions& FSimulatedEditorPort::GetFunctions()
{
	return *Functions;
}

IZorvekMCPBridgeWorld& FSimulatedEditorPort::GetWorld()
{
	return *World;
}

FZorvekMCPBridgeObjectHandle FSimulatedEditorPort::ToHandle(const FSimulatedObject* Object)
{
	return FZorvekMCPBridgeObjectHandle(const_cast<FSimulatedObject*>(Object));
}

FSimulatedObject* FSimulatedEditorPort::ToObject(FZorvekMCPBridgeObjectHandle Handle)
{
	return static_cast<FSimulatedObject*>(Handle.GetRaw());
}
