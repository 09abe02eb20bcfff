#include "SimulatedPackageFiles.h"

#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"
#include "Serialization/JsonWriter.h"
#include "SimulatedEditor.h"

#include <algorithm>
#include <filesystem>

namespace
{
	// Properties the engine's save skips.
	bool IsSaved(const FSimulatedProperty& Property)
	{
		return (Property.Flags & (ZorvekMCPBridgePropertyFlags::Transient | ZorvekMCPBridgePropertyFlags::Deprecated)) == 0 && Property.bExportable;
	}

	// "/Game/A/B.B:Sub.Inner" -> outer "/Game/A/B.B:Sub", name "Inner"; "/Game/A/B.B" -> "/Game/A/B", "B".
	bool SplitObjectPath(const FString& ObjectPath, FString& OutOuterPath, FString& OutName)
	{
		int32 Split = INDEX_NONE;
		for (int32 Index = ObjectPath.Len() - 1; Index >= 0; --Index)
		{
			if (ObjectPath[Index] == TEXT('.') || ObjectPath[Index] == TEXT(':'))
			{
				Split = Index;
				break;
			}
		}
		if (Split <= 0 || Split == ObjectPath.Len() - 1)
		{
			return false;
		}
		OutOuterPath = ObjectPath.Left(Split);
		OutName = ObjectPath.Mid(Split + 1);
		return true;
	}

	bool LoadPackageFile(FSimulatedEditor& Editor, const FString& FileName, FString& OutError)
	{
		FString Text;
		TSharedPtr<FJsonObject> Root;
		if (!FFileHelper::LoadFileToString(Text, *FileName) || !FJsonSerializer::Deserialize(TJsonReaderFactory<TCHAR>::Create(Text), Root) || !Root.IsValid())
		{
			OutError = FString::Printf(TEXT("%s is not a saved package."), *FileName);
			return false;
		}
		const FString PackageName = Root->GetStringField(TEXT("package"));
		FSimulatedObject* Package = Editor.FindOrCreatePackage(PackageName);
		const TArray<TSharedPtr<FJsonValue>>* Entries = nullptr;
		if (!Package || !Root->TryGetArrayField(TEXT("objects"), Entries))
		{
			OutError = FString::Printf(TEXT("%s names no package or objects."), *FileName);
			return false;
		}
		// Every object first, so values may refer to any object of the package.
		std::vector<std::pair<FSimulatedObject*, TSharedPtr<FJsonObject>>> Loaded;
		for (const TSharedPtr<FJsonValue>& Entry : *Entries)
		{
			const TSharedPtr<FJsonObject> Object = Entry->AsObject();
			FString OuterPath;
			FString Name;
			if (!Object.IsValid() || !SplitObjectPath(Object->GetStringField(TEXT("path")), OuterPath, Name))
			{
				OutError = FString::Printf(TEXT("%s holds an object without a path."), *FileName);
				return false;
			}
			FSimulatedObject* Existing = Editor.FindObject(Object->GetStringField(TEXT("path")));
			if (!Existing)
			{
				FSimulatedType* Class = Editor.FindTypeByPath(Object->GetStringField(TEXT("class")));
				FSimulatedObject* Outer = Editor.FindObject(OuterPath);
				Existing = Editor.CreateObject(Class, Outer, Name, OutError);
				if (!Existing)
				{
					OutError = FString::Printf(TEXT("%s: %s"), *FileName, *OutError);
					return false;
				}
			}
			Loaded.emplace_back(Existing, Object);
		}
		for (const auto& [Object, Json] : Loaded)
		{
			const TSharedPtr<FJsonObject>* Values = nullptr;
			if (!Json->TryGetObjectField(TEXT("values"), Values))
			{
				continue;
			}
			for (const auto& Pair : (*Values)->Values)
			{
				const int32 Index = Object->Class->FindPropertyIndex(Pair.Key);
				FString ImportError;
				if (Index != INDEX_NONE)
				{
					// Lenient as the engine's load of a text value: what does not import keeps its default.
					Editor.ImportValueText(*Object->Class->AllProperties[(size_t)Index], Object->Values[(size_t)Index], Pair.Value->AsString(), ImportError, Object);
				}
			}
		}
		return true;
	}
}

FString SimulatedPackageFiles::GetPackageFileName(const FString& Directory, const FString& PackageName)
{
	FString Folder = Directory;
	if (!Folder.EndsWith(TEXT("/")))
	{
		Folder += TEXT("/");
	}
	return Folder + PackageName.Mid(1) + TEXT(".json");
}

bool SimulatedPackageFiles::SavePackage(const FSimulatedEditor& Editor, const FSimulatedObject& Package, FString& OutFileName)
{
	OutFileName = GetPackageFileName(Editor.GetSavedPackagesDirectory(), Package.Name);
	TSharedPtr<FJsonObject> Root = MakeShared<FJsonObject>();
	Root->SetStringField(TEXT("package"), Package.Name);
	TArray<TSharedPtr<FJsonValue>> Entries;
	Editor.ForEachObject([&Editor, &Package, &Entries](FSimulatedObject* Object)
	{
		if (Object == &Package || Object->GetOutermost() != &Package || dynamic_cast<const FSimulatedType*>(Object))
		{
			return;
		}
		TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetStringField(TEXT("path"), Object->GetPathName());
		Entry->SetStringField(TEXT("class"), Object->Class->GetPathName());
		TSharedPtr<FJsonObject> Values = MakeShared<FJsonObject>();
		for (size_t Index = 0; Index < Object->Class->AllProperties.size(); ++Index)
		{
			const FSimulatedProperty& Property = *Object->Class->AllProperties[Index];
			FString Text;
			if (IsSaved(Property) && Editor.ExportValueText(Property, Object->Values[Index], false, Text, Object))
			{
				Values->SetStringField(Property.Name, Text);
			}
		}
		Entry->SetObjectField(TEXT("values"), Values);
		Entries.Add(MakeShared<FJsonValueObject>(Entry));
	});
	Root->SetArrayField(TEXT("objects"), Entries);

	FString Text;
	FJsonSerializer::Serialize(Root, TJsonWriterFactory<>::Create(&Text));
	IFileManager& FileManager = IFileManager::Get();
	// The engine's save refuses a read-only file (checked here because the host may run as a
	// user whom file permissions do not stop).
	if (FileManager.FileExists(*OutFileName) && FileManager.IsReadOnly(*OutFileName))
	{
		return false;
	}
	int32 SlashIndex = INDEX_NONE;
	OutFileName.FindLastChar(TEXT('/'), SlashIndex);
	FileManager.MakeDirectory(*OutFileName.Left(SlashIndex), true);
	return FFileHelper::SaveStringToFile(Text, *OutFileName, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM);
}

int32 SimulatedPackageFiles::LoadSavedPackages(FSimulatedEditor& Editor, TArray<FString>& OutErrors)
{
	const std::filesystem::path Root(UECompatToUtf8(Editor.GetSavedPackagesDirectory()));
	std::error_code ErrorCode;
	if (!std::filesystem::is_directory(Root, ErrorCode))
	{
		return 0;
	}
	// Sorted, so packages load in the same order on every start.
	std::vector<std::filesystem::path> Files;
	for (const std::filesystem::directory_entry& Entry : std::filesystem::recursive_directory_iterator(Root, ErrorCode))
	{
		if (Entry.is_regular_file() && Entry.path().extension() == ".json")
		{
			Files.push_back(Entry.path());
		}
	}
	std::sort(Files.begin(), Files.end());
	int32 Count = 0;
	for (const std::filesystem::path& File : Files)
	{
		FString Error;
		if (LoadPackageFile(Editor, UECompatFromUtf8(File.string()), Error))
		{
			++Count;
		}
		else
		{
			OutErrors.Add(Error);
		}
	}
	return Count;
}
