// Notes the frames of its actor in the order in which they take effect.
void note(int value){
	setglobalvar("noted", value);
}

void main(){
	setglobalvar("order", getglobalvar("order") + "F" + getlocalvar("frame"));
	setglobalvar("animation", getlocalvar("animhandle"));
}
