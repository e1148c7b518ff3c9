void main(){
	setglobalvar("order", getglobalvar("order") + "L");
	setlocalvar("level", 1);
	nosuchfunction();
}
