// The editor port in the Unreal Editor: each member is a few engine calls; the tool logic lives
// in the portable code that calls it.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

class UObject;

class FZorvekMCPBridgeEngineAssetRegistry : public IZorvekMCPBridgeAssetRegistry
{
public:
	void EnumerateAssets(const FZorvekMCPBridgeAssetFilter& Filter, TFunctionRef<bool(const FZorvekMCPBridgeAssetData&)> Callback) const override;
	TArray<FZorvekMCPBridgeAssetData> GetAssetsByPackageName(const FString& PackageName) const override;
};

class FZorvekMCPBridgeEngineObjects : public IZorvekMCPBridgeObjects
{
public:
	FZorvekMCPBridgeObjectHandle LoadObject(const FString& ObjectPath) override;
	FZorvekMCPBridgeObjectHandle FindObject(const FString& ObjectPath) const override;
	FZorvekMCPBridgeObjectIdentity GetIdentity(FZorvekMCPBridgeObjectHandle Object) const override;
	FZorvekMCPBridgeTypeInfo GetClassInfo(FZorvekMCPBridgeObjectHandle Object) const override;
	bool IsA(FZorvekMCPBridgeObjectHandle Object, const FString& ClassPath) const override;
	bool FindType(EZorvekMCPBridgeTypeKind Kind, const FString& PathOrShortName, FZorvekMCPBridgeTypeInfo& OutType) const override;
	bool LoadClass(const FString& ClassPath, FZorvekMCPBridgeTypeInfo& OutClass) override;
	bool IsChildOf(const FString& ClassPath, const FString& BaseClassPath) const override;
};

class FZorvekMCPBridgeEngineReflection : public IZorvekMCPBridgeReflection
{
public:
	void EnumerateProperties(FZorvekMCPBridgeObjectHandle Object, TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const override;
	FZorvekMCPBridgePropertyCursor FindProperty(FZorvekMCPBridgeObjectHandle Object, const FString& PropertyName) const override;
	bool ImportText(const FZorvekMCPBridgePropertyCursor& Value, const FString& Text) const override;
	FString GetPropertyName(const FZorvekMCPBridgePropertyCursor& Value) const override;
	FString GetPropertyCppType(const FZorvekMCPBridgePropertyCursor& Value) const override;
	uint64 GetPropertyFlags(const FZorvekMCPBridgePropertyCursor& Value) const override;
	EZorvekMCPBridgePropertyKind GetPropertyKind(const FZorvekMCPBridgePropertyCursor& Value) const override;
	bool ExportText(const FZorvekMCPBridgePropertyCursor& Value, FString& OutText) const override;
	FZorvekMCPBridgeObjectHandle GetReferencedObject(const FZorvekMCPBridgePropertyCursor& Value) const override;
	int32 GetArrayNum(const FZorvekMCPBridgePropertyCursor& Value) const override;
	FString GetArrayElementCppType(const FZorvekMCPBridgePropertyCursor& Value) const override;
	FZorvekMCPBridgePropertyCursor GetArrayElement(const FZorvekMCPBridgePropertyCursor& Value, int32 Index) const override;
	FString GetStructName(const FZorvekMCPBridgePropertyCursor& Value) const override;
	FString GetStructPath(const FZorvekMCPBridgePropertyCursor& Value) const override;
	void EnumerateStructFields(const FZorvekMCPBridgePropertyCursor& Value, TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const override;
	FZorvekMCPBridgePropertyCursor FindStructField(const FZorvekMCPBridgePropertyCursor& Value, const FString& FieldName) const override;
};

class FZorvekMCPBridgeEngineMaterials : public IZorvekMCPBridgeMaterials
{
public:
	bool ReadMaterial(FZorvekMCPBridgeObjectHandle Material, const TArray<FString>& RootProperties, FZorvekMCPBridgeMaterialSnapshot& OutSnapshot) const override;
};

class FZorvekMCPBridgeEngineEditorPort : public IZorvekMCPBridgeEditorPort
{
public:
	FString GetEditorDescription() const override;
	bool IsSimulated() const override { return false; }
	IZorvekMCPBridgeAssetRegistry& GetAssetRegistry() override { return AssetRegistry; }
	IZorvekMCPBridgeObjects& GetObjects() override { return Objects; }
	IZorvekMCPBridgeReflection& GetReflection() override { return Reflection; }
	IZorvekMCPBridgeMaterials& GetMaterials() override { return Materials; }

	static UObject* ToObject(FZorvekMCPBridgeObjectHandle Handle);
	static FZorvekMCPBridgeObjectHandle ToHandle(const UObject* Object);

private:
	FZorvekMCPBridgeEngineAssetRegistry AssetRegistry;
	FZorvekMCPBridgeEngineObjects Objects;
	FZorvekMCPBridgeEngineReflection Reflection;
	FZorvekMCPBridgeEngineMaterials Materials;
};
