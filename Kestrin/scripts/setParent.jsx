

var id = %d;
var child = %d;
var parent = %d;
var item = null;


app.project.items.length

for (var i = 1; i <= app.project.items.length; i++) {
       if (app.project.item(i).id === id) {
            item = app.project.item(i);
            break;
       }
}

if (parent !== 0) {
	item.layer(child).parent = item.layer(parent)
} else {
	item.layer(child).parent = null;
}

