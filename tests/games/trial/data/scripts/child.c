void main(){
	setglobalvar("order", getglobalvar("order") + "C" + getlocalvar("spawn_type"));
}
