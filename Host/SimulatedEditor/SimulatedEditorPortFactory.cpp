// The headless host's editor: the simulated editor over a project fixture, the sample project
// unless the host selected another.
#include "SimulatedEditorPort.h"
#include "SimulatedFunctions.h"
#include "SimulatedPackageFiles.h"

DEFINE_LOG_CATEGORY_STATIC(LogZorvekSimulatedEditor, Log, All);

namespace
{
	FString& GetSelectedProjectFile()
	{
		static FString SelectedProjectFile;
		return SelectedProjectFile;
	}

	TSharedPtr<FSimulatedEditor> LoadProject(const FString& FilePath, FString& OutError)
	{
		TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
		if (!Editor->LoadProjectFile(FilePath, OutError))
		{
			return nullptr;
		}
		if (FilePath == GetSimulatedSampleProjectFile())
		{
			SimulatedVessa::RegisterSamples(*Editor);
		}
		// What earlier sessions saved, as the editor finds its packages on disk at start.
		TArray<FString> Errors;
		SimulatedPackageFiles::LoadSavedPackages(*Editor, Errors);
		for (const FString& Error : Errors)
		{
			UE_LOG(LogZorvekSimulatedEditor, Warning, TEXT("Saved package skipped: %s"), *Error);
		}
		return Editor;
	}
}

FString GetSimulatedSampleProjectFile()
{
	return UECompatFromUtf8(ZORVEK_SAMPLE_PROJECT_FILE);
}

bool SelectSimulatedEditorProject(const FString& FilePath, FString& OutError)
{
	const FString Chosen = FilePath.IsEmpty() ? GetSimulatedSampleProjectFile() : FilePath;
	if (!LoadProject(Chosen, OutError).IsValid())
	{
		return false;
	}
	GetSelectedProjectFile() = Chosen;
	return true;
}

TSharedPtr<IZorvekMCPBridgeEditorPort> CreateZorvekMCPBridgeEditorPort()
{
	const FString ProjectFile = GetSelectedProjectFile().IsEmpty() ? GetSimulatedSampleProjectFile() : GetSelectedProjectFile();
	FString Error;
	const TSharedPtr<FSimulatedEditor> Editor = LoadProject(ProjectFile, Error);
	if (!Editor.IsValid())
	{
		UE_LOG(LogZorvekSimulatedEditor, Error, TEXT("The simulated editor could not load %s: %s"), *ProjectFile, *Error);
		return nullptr;
	}
	UE_LOG(LogZorvekSimulatedEditor, Display, TEXT("Simulated editor serving project %s from %s (%d assets in the registry)"),
		*Editor->GetProjectName(), *ProjectFile, (int32)Editor->GetRegistry().size());
	return MakeShared<FSimulatedEditorPort>(Editor);
}
