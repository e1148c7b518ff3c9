void main(){
	setglobalvar("order", getglobalvar("order") + "S" + getlocalvar("player"));
}
