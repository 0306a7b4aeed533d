(function () {
	var store = app.preferences, help = "@KESTRIN_HELP_PAGE@";
	var win = new Window('dialog{preferredSize:[400,""],alignChildren:["left","top"],orientation:"row",text:"Kestrin Preferences"}');
	var prefs;

	function read(name, kind, none) {
		var value = store.havePref("Kestrin", name) ? store["getPrefAs" + kind]("Kestrin", name) : none;
		return {name: name, value: value, type: "savePrefAs" + kind};
	}

	function bind(pref, ui, tag) {
		pref.ui = ui;
		pref.tag = tag;
		ui[tag] = pref.value;
	}

	function addAmount(to, label, on, amount) {
		var row = to.add('group{orientation:"row"}');
		bind(on, row.add('checkbox{text:"' + label + '",justify:"left"}'), "value");
		bind(amount, row.add('edittext{text:"10",characters:4,width:"30px"}'), "text");
	}

	function addList(to, label, width, items, pref) {
		var row = to.add('group{orientation:"row",alignment:"fill",preferredSize:[250,""]}');
		row.add("statictext", [0,0,100,15], label);
		var list = row.add("dropdownlist", undefined, items);
		list.alignment = "right";
		list.preferredSize.width = width;
		bind(pref, list, "selection");
	}

	function save() {
		try {
			for (var i = 0; i < prefs.length; i++) {
				var pref = prefs[i], value = pref.ui[pref.tag];
				// No selection counts as no number.
				if (pref.tag == "selection") value = value ? value.index : "";
				if (typeof value == "string") {
					value = parseFloat(value);
					if (isNaN(value)) value = pref.value;
				}
				store[pref.type]("Kestrin", pref.name, value);
			}
			store.saveToDisk();
			if (app.KESTRIN_update_panel) app.KESTRIN_update_panel();
		} catch (e) { alert(e); }
		win.close(0);
	}

	function showHelp() {
		var allowed = 0;
		try { allowed = store.getPrefAsLong("Main Pref Section", "Pref_SCRIPTING_FILE_NETWORK_SECURITY"); } catch (e) {}
		if (allowed !== 1) {
			alert("Network access has been blocked by your preferences. Please visit: " + help + " to view the most recent help docs.");
			return;
		}
		var mac = File.fs == "Macintosh", file = new File(mac ? "~/Desktop/tempurl.webloc" : "~/Desktop/kslinkscript.url");
		file.open("w");
		file.write(mac
			? '<?xml version="1.0" encoding="UTF-8"?>\n<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" '
				+ '"http://www.apple.com/DTDs/PropertyList-1.0.dtd">\n<plist version="1.0"><dict><key>URL</key><string>'
				+ help.replace(/&/g, "&amp;") + "</string></dict></plist>\n"
			: "[InternetShortcut]\rURL=" + help);
		file.close();
		file.execute();
		for (var i = 0; i < 100; i++) $.sleep(10);
		file.remove();
	}

	try {
		var padding = read("Padding", "Bool", false);
		var paddingAmount = read("PaddingAmount", "Float", 10);
		var expand = read("Expand", "Bool", false);
		var expandAmount = read("ExpandAmount", "Float", 0);
		var deleteMask = read("DeleteMask", "Bool", false);
		var includeMasks = read("IncludeMasks", "Bool", false);
		var resolution = read("Resolution", "Long", 0);
		var threeD = read("ThreeD", "Long", 0);
		prefs = [padding, paddingAmount, deleteMask, includeMasks, resolution, threeD, expand, expandAmount];

		var left = win.add('group{orientation:"column",alignChildren:"left",preferredSize:[250,""]}');
		bind(deleteMask, left.add("checkbox", undefined, "Delete mask after Mask Crop"), "value");
		addAmount(left, "Padding", padding, paddingAmount);
		addAmount(left, "Expand", expand, expandAmount);
		bind(includeMasks, left.add("checkbox", undefined, "Include Masks"), "value");
		addList(left, "Resolution", 200, ["Always Ask", "Always Use Full Res", "Always Use Current Res"], resolution);
		addList(left, "Pre-compose 3D Comps", 150, ["Always Ask", "Always Pre-compose", "Never Pre-compose"], threeD);

		var right = win.add('group{orientation:"column",preferredSize:[100,""]}');
		right.add("button", undefined, "Save").onClick = save;
		right.add("button", undefined, "Cancel").onClick = function () { win.close(2); };
		right.add("Button", undefined, "Panel").onClick = KESTRIN_openPanelPrefs;
		right.add("button", undefined, "Help").onClick = showHelp;
	} catch (e) { alert(e); }
	win.show();
})();

function KESTRIN_openPanelPrefs() {
	var store = app.preferences;
	var win = new Window("dialog", "Kestrin Panel Preferences");

	function addBoxes(bounds, items) {
		var group = win.add("group", bounds), boxes = [];
		for (var i = 0; i < items.length; i++) {
			var box = boxes[i] = group.add("checkbox", [0, 18 * i, 150, 18 * i + 15], items[i][1]);
			box.alignment = "left";
			box.item = items[i][0];
		}
		return boxes;
	}

	function tick(boxes, key, none) {
		var known = store.havePref("Kestrin", key);
		var shown = known ? "," + store.getPrefAsString("Kestrin", key) + "," : "";
		for (var i = 0; i < boxes.length; i++) {
			boxes[i].value = known ? shown.indexOf("," + boxes[i].item + ",") >= 0 : none;
		}
	}

	function saveTicked(boxes, key) {
		var ticked = [];
		for (var i = 0; i < boxes.length; i++) if (boxes[i].value) ticked.push(boxes[i].item);
		store.savePrefAsString("Kestrin", key, ticked.join(","));
	}

	win.add("statictext", [0,0,200,30], "Select which items you would like to show in the Kestrin panel", {multiline: true});
	win.add("statictext", [0,35,200,50], "Actions:");
	var actions = addBoxes([0,50,200,120], [["KESTRIN", "Kestrin"], ["CROP_DURATION", "Crop Duration"],
		["MASK_CROP", "Mask Crop"], ["PREFERENCES", "Preferences"]]);
	win.add("statictext", [0,125,200,140], "Preferences:");
	var items = addBoxes([0,145,200,250], [["DELETE_MASK", "Delete Mask"], ["PADDING", "Padding"], ["EXPAND", "Expand"],
		["INCLUDE_MASKS", "Include Masks"], ["RESOLUTION", "Resolution"], ["PRE_COMPOSE", "Pre-compose 3D Comps"]]);
	tick(actions, "MainPanelDisplay", true);
	tick(items, "PanelDisplay", false);

	win.add("button", [0,180,75,200], "Save").onClick = function () {
		try {
			saveTicked(items, "PanelDisplay");
			saveTicked(actions, "MainPanelDisplay");
			if (app.KESTRIN_update_panel) app.KESTRIN_update_panel();
			else alert("Please re-open the Kestrin panel for changes to take effect");
			win.close();
		} catch (e) { alert("An error has occurred. " + e); }
	};
	win.show();
}
