#include "Tools/ZorvekMCPBridgeRecipeTool.h"

#include "Blueprint/ZorvekMCPBridgeRecipeRunner.h"
#include "Server/ZorvekMCPBridgeServer.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"

namespace
{
	struct FRunRecipeParams
	{
		FString RecipeName;
		// Null when Steps is absent or not an array.
		const TArray<TSharedPtr<FJsonValue>>* Steps = nullptr;

		static FRunRecipeParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FRunRecipeParams Params;
			Params.RecipeName = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("RecipeName"), FString());
			if (Arguments.IsValid())
			{
				Arguments->TryGetArrayField(TEXT("Steps"), Params.Steps);
			}
			return Params;
		}
	};
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeRecipeTool::HandleRunRecipe(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const FRunRecipeParams Params = FRunRecipeParams::Read(Arguments);
	if (!Params.Steps)
	{
		return ZorvekMCPBridgeTools::MakeTextToolResult(TEXT("blueprint_run_recipe requires Steps."), true);
	}
	// Each step goes through the server's dispatch, exactly as a "tools/call" would.
	FZorvekMCPBridgeServer& Server = Context.Server;
	const auto CallTool = [&Server](const FString& ToolName, const TSharedPtr<FJsonObject>& StepArguments)
	{
		return Server.ExecuteTool(ToolName, StepArguments);
	};
	const ZorvekMCPBridgeRecipeRunner::FRecipeOutcome Outcome = ZorvekMCPBridgeRecipeRunner::RunRecipe(Params.RecipeName, *Params.Steps, CallTool);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Outcome.Report, !Outcome.bSucceeded);
}
