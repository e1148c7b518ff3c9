void main(){
	setglobalvar("order", getglobalvar("order") + "E");
}
