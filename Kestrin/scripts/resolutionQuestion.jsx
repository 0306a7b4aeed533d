
var ACCURATE = 1;
var FAST    = 2;
var winProps = {
        alignChildren: ['left','top'],
        multiline: true
    }
var win = new Window('dialog{preferredSize: [400,""], alignChildren: ["fill", "top"], orientation: "column", text: "Low Resolution", properties: {closeButton: false}}')
win.onClose = function () {
    
    return FAST
        
}

var s = "%s"

var text = win.add("statictext", undefined, 
"Kestrin requires a full resolution render to give you precise " +
"results, but your composition is currently set to " + s + ".\n\nWould you like " +
"to render at full resolution for accuracy or at the current resolution?"
        , winProps);
        
        
var bottomGrp = win.add('group{orientation: "row", alignment: "right",alignChildren: ["fill", "fill"], preferredSize: [400,""]}')
var btnGrp = bottomGrp.add("group");
btnGrp.alignment = "left"
var remGrp = bottomGrp.add('group{orientation: "row", alignChildren: ["right", ""], preferredSize: [10,""]}');
remGrp.alignment = "right"

var a = btnGrp.add("button", undefined, "Accurate");
var f = btnGrp.add("button", undefined, "Fast");

var space = remGrp.add("statictext", undefined, "     ");
space.preferredSize.width = 70;
var r = remGrp.add('checkbox{text: "Remember My Choice"}')
r.alignment = "right"

function savePref(value) {
    app.preferences.savePrefAsLong("Kestrin","Resolution", value);
    app.preferences.saveToDisk();
}

a.onClick = function() {
    if (r.value) {
        savePref(1)
    }
    win.close(ACCURATE);
}

f.onClick = function() {
    if (r.value) {
        savePref(2)
    }
    win.close(FAST);
}

var test = win.show();

if (test == FAST) {
    FAST;
} else {
    ACCURATE;
}
