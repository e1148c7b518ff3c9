void main(){
	setglobalvar("order", getglobalvar("order") + "d");
}
