using UnrealBuildTool;

public class ZorvekMCPBridge : ModuleRules
{
	public ZorvekMCPBridge(ReadOnlyTargetRules Target) : base(Target)
	{
		PCHUsage = PCHUsageMode.UseExplicitOrSharedPCHs;
		IWYUSupport = IWYUSupport.Full;

		// The public headers (the Vessa extension base class and its records) need these.
		PublicDependencyModuleNames.AddRange(new string[]
		{
			"Core",
			"CoreUObject",
			"Json"
		});

		PrivateDependencyModuleNames.AddRange(new string[]
		{
			"Engine",
			"ApplicationCore",
			"AssetRegistry",
			"BlueprintGraph",
			"HTTPServer",
			"InputCore",
			"JsonUtilities",
			"LevelEditor",
			"Projects",
			"Settings",
			"Slate",
			"SlateCore",
			"Sockets",
			"ToolMenus",
			"UnrealEd"
		});
	}
}
