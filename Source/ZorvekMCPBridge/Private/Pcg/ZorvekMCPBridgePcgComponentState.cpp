#include "Pcg/ZorvekMCPBridgePcgComponentState.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Pcg/ZorvekMCPBridgePcgReflection.h"
#include "World/ZorvekMCPBridgeActorReadback.h"

namespace
{
	bool ReadPcgDouble(const FZorvekMCPBridgePropertyCursor& Struct, const TCHAR* FieldName, double& OutValue)
	{
		const FZorvekMCPBridgePropertyCursor Field = Struct.IsValid() ? Struct.FindStructField(FieldName) : FZorvekMCPBridgePropertyCursor();
		FString Text;
		if (!Field.IsValid() || !Field.ExportText(Text))
		{
			return false;
		}
		LexFromString(OutValue, *Text);
		return true;
	}

	bool ReadPcgVector(const FZorvekMCPBridgePropertyCursor& Struct, const TCHAR* FieldName, FZorvekMCPBridgeVector& OutVector)
	{
		const FZorvekMCPBridgePropertyCursor Vector = Struct.FindStructField(FieldName);
		return Vector.IsValid() && ReadPcgDouble(Vector, TEXT("X"), OutVector.X) && ReadPcgDouble(Vector, TEXT("Y"), OutVector.Y) && ReadPcgDouble(Vector, TEXT("Z"), OutVector.Z);
	}

	// LastGeneratedBounds as bounds JSON with "is_valid"; the zero box before the first run.
	TSharedPtr<FJsonObject> MakePcgLastGeneratedBounds(const IZorvekMCPBridgeReflection& Reflection, FZorvekMCPBridgeObjectHandle Component)
	{
		FZorvekMCPBridgeBox Box;
		const FZorvekMCPBridgePropertyCursor Bounds = Reflection.FindProperty(Component, TEXT("LastGeneratedBounds"));
		if (Bounds.IsValid() && Bounds.GetKind() == EZorvekMCPBridgePropertyKind::Struct
			&& ReadPcgVector(Bounds, TEXT("Min"), Box.Min) && ReadPcgVector(Bounds, TEXT("Max"), Box.Max))
		{
			double IsValid = 0.0;
			FString ValidText;
			const FZorvekMCPBridgePropertyCursor ValidField = Bounds.FindStructField(TEXT("IsValid"));
			if (ValidField.IsValid() && ValidField.ExportText(ValidText))
			{
				// uint8 in 5.x ("1"); a bool in older engines ("True").
				LexFromString(IsValid, *ValidText);
				Box.bIsValid = IsValid != 0.0 || ValidText.Equals(TEXT("True"), ESearchCase::IgnoreCase);
			}
		}
		else
		{
			Box = FZorvekMCPBridgeBox();
		}
		TSharedPtr<FJsonObject> Json = ZorvekMCPBridgeActorReadback::MakeBoundsJson(Box);
		Json->SetBoolField(TEXT("is_valid"), Box.bIsValid);
		return Json;
	}

	// The data object of one FPCGTaggedData: Data.Data in 5.7 (the wrapper struct), Data itself
	// before.
	FZorvekMCPBridgeObjectHandle GetPcgTaggedDataObject(const FZorvekMCPBridgePropertyCursor& TaggedData)
	{
		const FZorvekMCPBridgePropertyCursor Data = TaggedData.FindStructField(TEXT("Data"));
		if (!Data.IsValid())
		{
			return FZorvekMCPBridgeObjectHandle();
		}
		if (Data.GetKind() == EZorvekMCPBridgePropertyKind::Struct)
		{
			const FZorvekMCPBridgePropertyCursor Wrapped = Data.FindStructField(TEXT("Data"));
			return Wrapped.IsValid() && Wrapped.GetKind() == EZorvekMCPBridgePropertyKind::ObjectReference ? Wrapped.GetReferencedObject() : FZorvekMCPBridgeObjectHandle();
		}
		return Data.GetKind() == EZorvekMCPBridgePropertyKind::ObjectReference ? Data.GetReferencedObject() : FZorvekMCPBridgeObjectHandle();
	}

	bool IsPcgPointData(IZorvekMCPBridgeObjects& Objects, FZorvekMCPBridgeObjectHandle Data)
	{
		return Objects.IsA(Data, ZorvekMCPBridgePcgReflection::BasePointDataClassPath) || Objects.IsA(Data, ZorvekMCPBridgePcgReflection::PointDataClassPath);
	}

	TSharedPtr<FJsonObject> MakePcgUnavailableGraphOutput()
	{
		TSharedPtr<FJsonObject> Output = MakeShared<FJsonObject>();
		Output->SetNumberField(TEXT("tagged_data_count"), 0);
		Output->SetNumberField(TEXT("point_data_count"), 0);
		Output->SetNumberField(TEXT("total_point_count"), 0);
		Output->SetArrayField(TEXT("items"), TArray<TSharedPtr<FJsonValue>>());
		Output->SetStringField(TEXT("status"), TEXT("generated_graph_output_unavailable"));
		return Output;
	}

	// A soft object path as its export text gives it, without quotes; empty for null.
	FString CleanPcgActorPath(FString Text)
	{
		Text.TrimStartAndEndInline();
		if (Text.Len() >= 2 && Text.StartsWith(TEXT("\"")) && Text.EndsWith(TEXT("\"")))
		{
			Text = Text.Mid(1, Text.Len() - 2);
		}
		return Text == TEXT("None") ? FString() : Text;
	}

	// The actor paths a managed actors resource lists: GeneratedActorsArray, else the old
	// GeneratedActors (a set, which reflection reaches only as its text "(a,b)").
	TArray<FString> ReadPcgManagedActorPaths(const IZorvekMCPBridgeReflection& Reflection, FZorvekMCPBridgeObjectHandle Resource)
	{
		TArray<FString> Paths;
		FZorvekMCPBridgePropertyCursor List = Reflection.FindProperty(Resource, TEXT("GeneratedActorsArray"));
		if (!List.IsValid())
		{
			List = Reflection.FindProperty(Resource, TEXT("GeneratedActors"));
		}
		if (!List.IsValid())
		{
			return Paths;
		}
		if (List.GetKind() == EZorvekMCPBridgePropertyKind::Array)
		{
			for (int32 Index = 0; Index < List.GetArrayNum(); ++Index)
			{
				FString Text;
				const FZorvekMCPBridgePropertyCursor Element = List.GetArrayElement(Index);
				if (Element.IsValid() && Element.ExportText(Text))
				{
					const FString Path = CleanPcgActorPath(Text);
					if (!Path.IsEmpty())
					{
						Paths.AddUnique(Path);
					}
				}
			}
			return Paths;
		}
		FString SetText;
		if (List.ExportText(SetText))
		{
			SetText.TrimStartAndEndInline();
			if (SetText.StartsWith(TEXT("(")) && SetText.EndsWith(TEXT(")")))
			{
				SetText = SetText.Mid(1, SetText.Len() - 2);
			}
			TArray<FString> Parts;
			SetText.ParseIntoArray(Parts, TEXT(","), true);
			for (const FString& Part : Parts)
			{
				const FString Path = CleanPcgActorPath(Part);
				if (!Path.IsEmpty())
				{
					Paths.AddUnique(Path);
				}
			}
		}
		return Paths;
	}

	TArray<TSharedPtr<FJsonValue>> ToPcgStringValues(const TArray<FString>& Texts)
	{
		TArray<TSharedPtr<FJsonValue>> Values;
		for (const FString& Text : Texts)
		{
			Values.Add(MakeShared<FJsonValueString>(Text));
		}
		return Values;
	}
}

bool ZorvekMCPBridgePcgComponentState::ReadGenerated(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component)
{
	bool bGenerated = false;
	return ZorvekMCPBridgePcgReflection::ReadBoolProperty(Port.GetReflection(), Component, TEXT("bGenerated"), bGenerated) && bGenerated;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgComponentState::MakeGeneratedGraphOutput(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component)
{
	const FZorvekMCPBridgePropertyCursor Output = Port.GetReflection().FindProperty(Component, TEXT("GeneratedGraphOutput"));
	const FZorvekMCPBridgePropertyCursor TaggedData = Output.IsValid() && Output.GetKind() == EZorvekMCPBridgePropertyKind::Struct ? Output.FindStructField(TEXT("TaggedData")) : FZorvekMCPBridgePropertyCursor();
	if (!TaggedData.IsValid() || TaggedData.GetKind() != EZorvekMCPBridgePropertyKind::Array)
	{
		return MakePcgUnavailableGraphOutput();
	}
	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
	int32 PointDataCount = 0;
	int64 TotalPointCount = 0;
	TArray<TSharedPtr<FJsonValue>> Items;
	const int32 ItemCount = TaggedData.GetArrayNum();
	for (int32 Index = 0; Index < ItemCount; ++Index)
	{
		const FZorvekMCPBridgePropertyCursor Entry = TaggedData.GetArrayElement(Index);
		const FZorvekMCPBridgeObjectHandle Data = Entry.IsValid() ? GetPcgTaggedDataObject(Entry) : FZorvekMCPBridgeObjectHandle();
		const bool bIsPointData = Data.IsValid() && IsPcgPointData(Objects, Data);
		int64 PointCount = 0;
		if (bIsPointData)
		{
			++PointDataCount;
			ZorvekMCPBridgePcgReflection::CallIntegerGetter(Port, Data, TEXT("GetNumPoints"), PointCount);
			TotalPointCount += PointCount;
		}
		FString Pin;
		const FZorvekMCPBridgePropertyCursor PinField = Entry.IsValid() ? Entry.FindStructField(TEXT("Pin")) : FZorvekMCPBridgePropertyCursor();
		if (PinField.IsValid())
		{
			PinField.ExportText(Pin);
		}
		TSharedPtr<FJsonObject> Item = MakeShared<FJsonObject>();
		Item->SetNumberField(TEXT("index"), Index);
		Item->SetStringField(TEXT("pin"), Pin);
		Item->SetStringField(TEXT("data_class_path"), Data.IsValid() ? Objects.GetClassInfo(Data).Path : FString());
		Item->SetBoolField(TEXT("is_point_data"), bIsPointData);
		Item->SetNumberField(TEXT("point_count"), (double)PointCount);
		Items.Add(MakeShared<FJsonValueObject>(Item));
	}
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetNumberField(TEXT("tagged_data_count"), ItemCount);
	Result->SetNumberField(TEXT("point_data_count"), PointDataCount);
	Result->SetNumberField(TEXT("total_point_count"), (double)TotalPointCount);
	Result->SetArrayField(TEXT("items"), Items);
	Result->SetStringField(TEXT("status"), TEXT("generated_graph_output_inspected"));
	return Result;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgComponentState::MakeComponentState(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component)
{
	const IZorvekMCPBridgeReflection& Reflection = Port.GetReflection();
	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
	bool bDirtyGenerated = false;
	ZorvekMCPBridgePcgReflection::ReadBoolProperty(Reflection, Component, TEXT("bDirtyGenerated"), bDirtyGenerated);
	// Not reflected in 5.7 (a plain editor-only member): false unless an engine reflects it.
	bool bWasGeneratedThisSession = false;
	ZorvekMCPBridgePcgReflection::ReadBoolProperty(Reflection, Component, TEXT("bWasGeneratedThisSession"), bWasGeneratedThisSession);

	// The live actors of the editor world by path, to tell spawned actors that still exist from
	// stale references.
	TMap<FString, FZorvekMCPBridgeActorEntry> LevelActorsByPath;
	for (const FZorvekMCPBridgeActorEntry& Actor : Port.GetWorld().GetAllLevelActors())
	{
		LevelActorsByPath.Add(Actor.Path.ToLower(), Actor);
	}

	TArray<FString> GeneratedActors;
	TArray<TSharedPtr<FJsonValue>> NativeSpawnedActors;
	TArray<TSharedPtr<FJsonValue>> Resources;
	const FZorvekMCPBridgePropertyCursor ResourceList = Reflection.FindProperty(Component, TEXT("GeneratedResources"));
	const int32 ResourceCount = ResourceList.IsValid() && ResourceList.GetKind() == EZorvekMCPBridgePropertyKind::Array ? ResourceList.GetArrayNum() : 0;
	for (int32 Index = 0; Index < ResourceCount; ++Index)
	{
		const FZorvekMCPBridgePropertyCursor Element = ResourceList.GetArrayElement(Index);
		const FZorvekMCPBridgeObjectHandle Resource = Element.IsValid() ? Element.GetReferencedObject() : FZorvekMCPBridgeObjectHandle();
		const bool bIsManagedActors = Objects.IsA(Resource, ZorvekMCPBridgePcgReflection::ManagedActorsClassPath);
		const TArray<FString> ResourceActors = bIsManagedActors ? ReadPcgManagedActorPaths(Reflection, Resource) : TArray<FString>();
		for (const FString& Path : ResourceActors)
		{
			if (GeneratedActors.Contains(Path))
			{
				continue;
			}
			GeneratedActors.Add(Path);
			if (const FZorvekMCPBridgeActorEntry* Live = LevelActorsByPath.Find(Path.ToLower()))
			{
				TSharedPtr<FJsonObject> Actor = MakeShared<FJsonObject>();
				Actor->SetStringField(TEXT("name"), Live->Name);
				Actor->SetStringField(TEXT("label"), Live->Label);
				Actor->SetStringField(TEXT("path"), Live->Path);
				NativeSpawnedActors.Add(MakeShared<FJsonValueObject>(Actor));
			}
		}
		TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetNumberField(TEXT("index"), Index);
		Entry->SetBoolField(TEXT("is_managed_actors"), bIsManagedActors);
		Entry->SetStringField(TEXT("class_path"), Resource.IsValid() ? Objects.GetClassInfo(Resource).Path : FString());
		Entry->SetNumberField(TEXT("generated_actor_count"), ResourceActors.Num());
		Entry->SetArrayField(TEXT("generated_actors"), ToPcgStringValues(ResourceActors));
		Resources.Add(MakeShared<FJsonValueObject>(Entry));
	}

	TSharedPtr<FJsonObject> State = MakeShared<FJsonObject>();
	State->SetBoolField(TEXT("generated"), ReadGenerated(Port, Component));
	State->SetBoolField(TEXT("dirty_generated"), bDirtyGenerated);
	State->SetBoolField(TEXT("was_generated_this_session"), bWasGeneratedThisSession);
	State->SetNumberField(TEXT("generated_resource_count"), ResourceCount);
	State->SetObjectField(TEXT("last_generated_bounds"), MakePcgLastGeneratedBounds(Reflection, Component));
	State->SetObjectField(TEXT("generated_graph_output"), MakeGeneratedGraphOutput(Port, Component));
	State->SetNumberField(TEXT("generated_actor_count"), GeneratedActors.Num());
	State->SetArrayField(TEXT("generated_actors"), ToPcgStringValues(GeneratedActors));
	State->SetNumberField(TEXT("native_spawned_actor_count"), NativeSpawnedActors.Num());
	State->SetArrayField(TEXT("native_spawned_actors"), NativeSpawnedActors);
	State->SetArrayField(TEXT("generated_resources"), Resources);
	return State;
}
