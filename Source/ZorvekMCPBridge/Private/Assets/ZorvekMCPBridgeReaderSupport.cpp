#include "Assets/ZorvekMCPBridgeAssetReaders.h"

#include "Assets/ZorvekMCPBridgePropertyExport.h"

void ZorvekMCPBridgeAssets::SetNamedArray(const TSharedPtr<FJsonObject>& Target, const FString& Key, const TArray<TSharedPtr<FJsonValue>>& Items, const TCHAR* CountKey)
{
	Target->SetArrayField(Key, Items);
	Target->SetNumberField(CountKey ? FString(CountKey) : FString::Printf(TEXT("%s_count"), *Key), Items.Num());
}

TArray<TSharedPtr<FJsonValue>> ZorvekMCPBridgeAssets::ExportStructArrayElements(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgePropertyCursor& ArrayValue, int32& OutTotalCount)
{
	TArray<TSharedPtr<FJsonValue>> Elements;
	OutTotalCount = ArrayValue.GetArrayNum();
	const int32 ExportedCount = FMath::Min(OutTotalCount, MaxExportedArrayItems);
	for (int32 Index = 0; Index < ExportedCount; ++Index)
	{
		TSharedPtr<FJsonObject> Element = ExportStructJson(Port, ArrayValue.GetArrayElement(Index), 0, MaxExportedStructDepth);
		Element->SetNumberField(TEXT("index"), Index);
		Elements.Add(MakeShared<FJsonValueObject>(Element));
	}
	return Elements;
}

void ZorvekMCPBridgeAssets::SetStructElementArray(IZorvekMCPBridgeEditorPort& Port, const TSharedPtr<FJsonObject>& Target, const FString& Key, const FZorvekMCPBridgePropertyCursor& ArrayValue)
{
	int32 TotalCount = 0;
	SetNamedArray(Target, Key, ExportStructArrayElements(Port, ArrayValue, TotalCount));
	if (TotalCount > MaxExportedArrayItems)
	{
		Target->SetNumberField(FString::Printf(TEXT("%s_truncated_after"), *Key), MaxExportedArrayItems);
		Target->SetNumberField(FString::Printf(TEXT("%s_total_count"), *Key), TotalCount);
	}
}

FString ZorvekMCPBridgeAssets::GetExportText(const FZorvekMCPBridgePropertyCursor& Value)
{
	FString Text;
	Value.ExportText(Text);
	return Text;
}
