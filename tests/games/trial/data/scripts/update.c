void main(){
	setglobalvar("order", getglobalvar("order") + "U");
}
